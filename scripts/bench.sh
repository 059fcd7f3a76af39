#!/usr/bin/env bash
# Runs every benchmark built in the given build folder, one after another, so
# that they do not compete for the machine's two cores.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
status=0
for b in "$build"/bench/*/tavna-bench-*; do
    [ -x "$b" ] || continue
    echo "== $(basename "$b")"
    "$b" || status=1
done
exit $status
