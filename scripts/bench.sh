#!/bin/sh
# Runs every benchmark executable of the build; each prints its own table.
set -eu
build=$1
found=0
for exe in "$build"/bench/bench_*.d/bench_*; do
    [ -x "$exe" ] || continue
    found=1
    echo "== $(basename "$exe")"
    QT_QPA_PLATFORM=offscreen "$exe"
done
[ $found -eq 1 ] || echo "no benchmarks built (libbenchmark-dev missing?)"
# two desktop hex editors opening the file size bench_hexedit loads, for comparison
if command -v Xvfb >/dev/null 2>&1 && command -v xdotool >/dev/null 2>&1; then
    echo "== hex editors for comparison"
    "$(dirname "$0")/bench_hexedit_compare.sh" 100
fi
