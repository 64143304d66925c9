#!/bin/sh
# The one place the scripts get an X display from when they have none.
#
# Sourced (". scripts/xvfb.sh"), it gives lark_xvfb [WIDTHxHEIGHTxDEPTH]: with DISPLAY
# already set it does nothing; otherwise it starts Xvfb on a display nobody uses (Xvfb
# picks it and tells which through -displayfd, so two scripts never race for one),
# exports DISPLAY once the server accepts clients, and stops it when the script exits.
# A script that needs its own exit trap calls lark_xvfb_stop in it.
#
# Run ("scripts/xvfb.sh [--screen WxHxD] COMMAND ARGS..."), it runs COMMAND with a
# display in the same way: for the Python scripts, which re-run themselves through it.

lark_xvfb_stop() {
    if [ -n "${_lark_xvfb_pid:-}" ]; then
        kill "$_lark_xvfb_pid" 2>/dev/null || true
        wait "$_lark_xvfb_pid" 2>/dev/null || true
        _lark_xvfb_pid=
    fi
    [ -z "${_lark_xvfb_fdfile:-}" ] || rm -f "$_lark_xvfb_fdfile"
}

lark_xvfb() {
    [ -z "${DISPLAY:-}" ] || return 0
    command -v Xvfb >/dev/null 2>&1 || { echo "no display and no Xvfb (Debian: xvfb)" >&2; return 1; }
    _lark_xvfb_fdfile=$(mktemp /tmp/larkxvfb.XXXXXX)
    Xvfb -displayfd 3 -screen 0 "${1:-1920x1080x24}" -nolisten tcp \
        3>"$_lark_xvfb_fdfile" >/dev/null 2>&1 &
    _lark_xvfb_pid=$!
    trap 'lark_xvfb_stop' EXIT
    trap 'exit 130' INT TERM
    # the number is written once the server listens; a server that died says nothing
    while [ ! -s "$_lark_xvfb_fdfile" ]; do
        if ! kill -0 "$_lark_xvfb_pid" 2>/dev/null; then
            echo "Xvfb did not start" >&2
            return 1
        fi
        sleep 0.05
    done
    DISPLAY=:$(head -n1 "$_lark_xvfb_fdfile")
    export DISPLAY
}

if [ "$(basename "$0")" = xvfb.sh ]; then
    set -eu
    screen=1920x1080x24
    if [ "${1:-}" = --screen ]; then
        screen=$2
        shift 2
    fi
    [ $# -gt 0 ] || { echo "usage: $0 [--screen WxHxD] COMMAND [ARGS...]" >&2; exit 2; }
    lark_xvfb "$screen"
    # not exec: the trap has to outlive the command to stop the server
    status=0
    "$@" || status=$?
    exit $status
fi
