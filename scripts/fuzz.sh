#!/usr/bin/env bash
# Runs the libFuzzer targets built in BUILD_DIR for about a minute in all,
# seeded from the shared test captures and small captures written by tavna-gen.
# A crash keeps its reproducer under BUILD_DIR/fuzz-crashes/ and fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: fuzz.sh BUILD_DIR}
seconds=${TAVNA_FUZZ_SECONDS:-28}
captures=$(cd .. && pwd)/shared/captures
work="$build/fuzz-work"
crashes="$build/fuzz-crashes"
rm -rf "$work"
mkdir -p "$work/files" "$work/frames" "$crashes"

gen="$build/tools/tavna-gen"
cp "$captures"/*.pcap "$work/files/" 2>/dev/null || true
if [ -x "$gen" ]; then
    "$gen" "$work/files/gen-sv.pcapng" --format pcapng-ns --sv 2 --asdus 2 --duration 0.002 --vlan 5
    "$gen" "$work/files/gen-hsr.pcap" --format pcap-ns --big-endian --sv 1 --duration 0.001 --hsr B
    "$gen" "$work/files/gen-goose.pcapng" --format pcapng --goose 2 --bitstrings 2 --prp A \
        --duration 0.01 --other 2
    "$gen" "$work/files/gen-sll.pcap" --link sll --sv 1 --goose 1 --vlan 3 --duration 0.002 \
        --seqdata-bytes 12 --asdus 3 --distinct-svids
    "$gen" "$work/files/gen-sll2.pcapng.gz" --format pcapng --link sll2 --sv 1 --duration 0.002 \
        --gzip
fi
"$build/tests/fuzz/tavna-fuzz-seeds" "$work/frames" "$work"/files/*

status=0
run() { # target, corpus, extra flags...
    local target=$1 corpus=$2; shift 2
    echo "== $target for ${seconds}s"
    if ! "$build/tests/fuzz/$target" "$corpus" -max_total_time="$seconds" \
        -artifact_prefix="$crashes/$target-" -print_final_stats=1 "$@" \
        > "$work/$target.log" 2>&1; then
        tail -40 "$work/$target.log"
        echo "$target failed; reproducer in $crashes" >&2
        status=1
    else
        grep -E '^stat::number_of_executed_units|^stat::peak_rss' "$work/$target.log" || true
    fi
}
# The big SV capture is a seed too; inputs stay small so each run is quick.
run fuzz_capture_file "$work/files" -max_len=65536 -timeout=10
run fuzz_frames "$work/frames" -max_len=2048 -timeout=10
exit $status
