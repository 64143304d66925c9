#!/bin/sh
# The updater end to end against a real nginx: a build stamped OLD whose portable copy
# updates itself to the release of a build stamped NEW, restarts, and then finds itself
# up to date. Both builds ask the update server on 127.0.0.1:PORT.
#   scripts/update_e2e.sh [E2E_BUILD_PREFIX] [PORT]
# The two build trees are PREFIX-old and PREFIX-new, beside build/: at the same depth
# as it, so that ccache (base_dir) serves them what build/ compiled.
set -eu
cd "$(dirname "$0")/.."
dir=${1:-build-e2e}
port=${2:-18188}
jobs=${JOBS:-2}
old=1.0.1.5
new=1.0.1.6
start=$(date +%s)
# the same flags as the main build, so that ccache serves all but the stamped files
common="-DCMAKE_BUILD_TYPE=RelWithDebInfo -DLARK_BUILD_BENCH=OFF -DLARK_UPDATE_HOST=127.0.0.1 -DLARK_UPDATE_PORT=$port"

cmake -S . -B "$dir-new" $common -DLARK_VERSION=$new -DLARK_BUILD_TESTS=OFF >/dev/null
cmake --build "$dir-new" -j"$jobs" --target larkTools larksim
rm -rf "$dir-release"
python3 scripts/make_dist.py "$dir-new" $new "$dir-release"

cmake -S . -B "$dir-old" $common -DLARK_VERSION=$old -DLARK_BUILD_TESTS=ON >/dev/null
cmake --build "$dir-old" -j"$jobs" --target tst_updateendtoend

LARK_E2E_RELEASE=$(readlink -f "$dir-release/releases") "$dir-old/tests/update/e2e/tst_updateendtoend"
echo "update end to end passed in $(( $(date +%s) - start )) s"
