#!/usr/bin/env bash
# Makes the user guide's screenshots again: runs the end-to-end session suite,
# which saves what the screen shows at each step into docs/images.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
out="$PWD/docs/images"
mkdir -p "$out"
TAVNA_SCREENSHOTS="$out" ctest --test-dir "$build" -R '^SessionTest$' --output-on-failure
ls "$out"
