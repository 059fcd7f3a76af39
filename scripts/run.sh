#!/usr/bin/env bash
# Opens the analyser on the bundled sample captures. Without a display it
# shows what they hold on the terminal and says how to see the window.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
shopt -s nullglob
samples=("$build"/samples/*.pcap "$build"/samples/*.pcapng)
if [ ${#samples[@]} -eq 0 ]; then
    echo "no sample captures in $build/samples" >&2
    exit 1
fi

if [ -x "$build/host/tavna" ] && [ -n "${DISPLAY:-}" ]; then
    # The working folder holds the help documents, the icon and the style sheet.
    cd "$build/run"
    exec "$build/host/tavna" "${samples[@]}"
fi

"$build/tools/tavna-inspect" "${samples[@]}"
if [ -x "$build/host/tavna" ]; then
    echo
    echo "No display here. To see the window: xvfb-run -a make run  (or make run on a desktop)."
fi
