#!/usr/bin/env bash
# Runs the test suites; with an argument (main, asan, tsan, fuzz) only that one.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
only=${1:-}
summary=$(mktemp)
trap 'rm -f "$summary"' EXIT

# Runs ctest and keeps its count for the closing line.
run_ctest() {
    local out
    out=$(mktemp)
    set +e
    ctest "$@" 2>&1 | tee "$out"
    local rc=${PIPESTATUS[0]}
    set -e
    grep -E '^[0-9]+% tests passed, [0-9]+ tests failed out of [0-9]+' "$out" >> "$summary" || true
    rm -f "$out"
    return "$rc"
}

want() { [ -z "$only" ] || [ "$only" = "$1" ]; }

configure_and_build() { # dir, cmake flags...
    local dir=$1; shift
    cmake -S . -B "$dir" "$@" > /dev/null
    cmake --build "$dir" -j "$jobs"
}

if want main; then
    echo "== main build: every test"
    configure_and_build build -DCMAKE_BUILD_TYPE=RelWithDebInfo
    run_ctest --test-dir build --output-on-failure -j "$jobs"
fi

if want asan; then
    echo "== parser under AddressSanitizer and UndefinedBehaviorSanitizer"
    configure_and_build build-asan -DCMAKE_BUILD_TYPE=Debug -DTAVNA_LAYERS=parser \
        -DTAVNA_SANITIZE=address,undefined -DTAVNA_BENCH=OFF
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
        run_ctest --test-dir build-asan --output-on-failure -j "$jobs"
fi

if want asan; then
    echo "== the window's load and removal tests under AddressSanitizer"
    cmake -S . -B build-asan-gui -DCMAKE_BUILD_TYPE=Debug -DTAVNA_SANITIZE=address,undefined \
        -DTAVNA_BENCH=OFF > /dev/null
    cmake --build build-asan-gui -j "$jobs" --target LoadSafetyTest FailureDialogsTest tavna-gen
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
        LSAN_OPTIONS=suppressions=$PWD/tests/lsan-gui.supp \
        run_ctest --test-dir build-asan-gui --output-on-failure -L load
fi

if want tsan; then
    echo "== model and parse worker under ThreadSanitizer"
    configure_and_build build-tsan -DCMAKE_BUILD_TYPE=Debug -DTAVNA_LAYERS=core \
        -DTAVNA_SANITIZE=thread -DTAVNA_BENCH=OFF
    TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
        run_ctest --test-dir build-tsan --output-on-failure -j "$jobs" -L threads
fi

if want fuzz; then
    echo "== libFuzzer run of the file reader and the frame decoders"
    configure_and_build build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAVNA_LAYERS=parser \
        -DCMAKE_CXX_COMPILER=clang++ -DTAVNA_FUZZ=ON -DTAVNA_TESTS=ON -DTAVNA_BENCH=OFF
    bash scripts/fuzz.sh build-fuzz
fi

# One closing line over every suite that ran.
awk '{ failed += $4; total += $NF } END { if (total > 0) printf "all suites: %d passed, %d failed\n", total - failed, failed }' "$summary"
