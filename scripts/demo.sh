#!/bin/sh
# Every page of the program alive against larksim, one screenshot a page in both
# skins, then the plot and automation windows. Without a display it runs under Xvfb.
# Prints where the pictures are.
#   scripts/demo.sh BUILD_DIR [OUT_DIR]
set -eu
build=$(readlink -f "$1")
out=$(readlink -f "${2:-$build/demo-shots}")
mkdir -p "$out"
. "$(dirname "$0")/xvfb.sh"
lark_xvfb 1920x1080x24
"$build/demo/larkdemo" "$build/larksim" "$out"
# the stream plot with its definition dialogs, and the automation window
"$build/demo/larkplotshots" "$build/larksim" "$out"
"$build/demo/larkautomationshots" "$out"
echo "screenshots saved in $out"
