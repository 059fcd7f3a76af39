#!/usr/bin/env bash
# Opens the analyser on the bundled sample captures; without a display, shows
# what they hold on the terminal and says how to see the window.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
samples=("$build"/samples/*.pcap*)

if [ -x "$build/host/tavna" ] && [ -n "${DISPLAY:-}" ]; then
    cd "$build/run"
    exec ./tavna "${samples[@]/#/../../}"
fi

"$build/tools/tavna-inspect" "${samples[@]}"
if [ -x "$build/host/tavna" ]; then
    echo
    echo "No display here. To see the window: xvfb-run -a make run  (or run make run on a desktop)."
fi
