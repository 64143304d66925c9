#!/bin/sh
# Starts the program. Without a display it runs under Xvfb, saves a screenshot of
# the screen after start-up, prints where, and ends the program.
set -eu
exe=$(readlink -f "$1")
if [ -n "${DISPLAY:-}" ]; then
    exec "$exe"
fi
. "$(dirname "$0")/xvfb.sh"
shot=${LARK_SHOT:-$(pwd)/shot-larkTools.png}
lark_xvfb 1920x1080x24
"$exe" &
app=$!
# give the window time to map and paint
sleep "${LARK_SHOT_DELAY:-4}"
import -window root "$shot"
# keep the window only: the bare root around it is black
convert "$shot" -trim +repage "$shot" 2>/dev/null || true
kill $app 2>/dev/null || true
wait $app 2>/dev/null || true
echo "screenshot saved to $shot"
