#!/bin/sh
# Starts the program. Without a display it runs under Xvfb, saves a screenshot of
# the screen after start-up, prints where, and ends the program.
set -eu
exe=$(readlink -f "$1")
if [ -n "${DISPLAY:-}" ]; then
    exec "$exe"
fi
shot=${LARK_SHOT:-$(pwd)/shot-larkTools.png}
disp=:$(( 90 + $$ % 100 ))
Xvfb "$disp" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null || true' EXIT
i=0
while [ ! -e "/tmp/.X11-unix/X${disp#:}" ] && [ $i -lt 50 ]; do sleep 0.1; i=$((i+1)); done
DISPLAY=$disp "$exe" &
app=$!
# give the window time to map and paint
sleep "${LARK_SHOT_DELAY:-4}"
DISPLAY=$disp import -window root "$shot"
# keep the window only: the bare root around it is black
convert "$shot" -trim +repage "$shot" 2>/dev/null || true
kill $app 2>/dev/null || true
wait $app 2>/dev/null || true
echo "screenshot saved to $shot"
