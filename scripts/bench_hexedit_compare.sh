#!/bin/sh
# For comparison with bench_hexedit: how long two desktop hex editors from Debian,
# Okteta and GHex, take from start to a window showing a 100 MiB file, and their
# resident size then. Runs under its own Xvfb; an editor that is not installed is
# skipped. Prints one line per editor.
set -eu
mb=${1:-100}
tmp=$(mktemp -d /tmp/hexcompare.XXXXXX)
file=$tmp/compare-${mb}M.bin
# a server of its own even beside a desktop: the editors' windows stay out of sight
. "$(dirname "$0")/xvfb.sh"
unset DISPLAY
lark_xvfb 1600x1000x24
trap 'lark_xvfb_stop; rm -rf "$tmp"' EXIT
# the same repeating pattern as the benchmark, read once so it is in the page cache
python3 -c "
import sys
block = bytes(((i * 31 + i // 251) & 0xff) for i in range(65536))
with open(sys.argv[1], 'wb') as f:
    for _ in range(int(sys.argv[2]) * 16): f.write(block)" "$file" "$mb"
cat "$file" >/dev/null

now_ms() { date +%s%3N; }

measure() {
    name=$1; shift
    command -v "$1" >/dev/null 2>&1 || { echo "$name: not installed, skipped"; return; }
    start=$(now_ms)
    GSK_RENDERER=cairo "$@" "$file" >/dev/null 2>&1 &
    pid=$!
    # the window is there when one with the file's name in its title is mapped
    shown=""
    while [ $(( $(now_ms) - start )) -lt 60000 ]; do
        if xdotool search --onlyvisible --name "compare-${mb}M" >/dev/null 2>&1; then
            shown=$(( $(now_ms) - start )); break
        fi
        sleep 0.02
    done
    sleep 2
    rss=$(ps -o rss= -p $pid 2>/dev/null | tr -d ' ' || echo 0)
    kill $pid 2>/dev/null || true
    wait $pid 2>/dev/null || true
    echo "$name: window with ${mb} MiB file after ${shown:-timeout} ms, RSS $(( ${rss:-0} / 1024 )) MiB"
}

measure Okteta okteta
measure GHex ghex
