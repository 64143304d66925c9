#!/bin/sh
# Every page of the program alive against larksim, one screenshot a page in both
# skins. Without a display it runs under Xvfb. Prints where the pictures are.
#   scripts/demo.sh BUILD_DIR [OUT_DIR]
set -eu
build=$(readlink -f "$1")
out=$(readlink -f "${2:-$build/demo-shots}")
mkdir -p "$out"
run() { "$build/demo/larkdemo" "$build/larksim" "$out"; }
if [ -n "${DISPLAY:-}" ]; then
    run
else
    disp=:$(( 90 + $$ % 100 ))
    Xvfb "$disp" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
    xvfb=$!
    trap 'kill $xvfb 2>/dev/null || true' EXIT
    i=0
    while [ ! -e "/tmp/.X11-unix/X${disp#:}" ] && [ $i -lt 50 ]; do sleep 0.1; i=$((i+1)); done
    DISPLAY=$disp run
fi
echo "screenshots saved in $out"
