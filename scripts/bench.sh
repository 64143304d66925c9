#!/bin/sh
# Runs every benchmark executable of the build, then merges what they measured into
# bench/report.json (one record per figure) and prints a short table.
set -eu
build=$1
root=$(cd "$(dirname "$0")/.." && pwd)
tmp=$(mktemp -d /tmp/larkbench.XXXXXX)
trap 'rm -rf "$tmp"' EXIT
found=0
for exe in "$build"/bench/bench_*.d/bench_*; do
    [ -x "$exe" ] || continue
    found=1
    name=$(basename "$exe")
    echo "== $name"
    QT_QPA_PLATFORM=offscreen "$exe" --benchmark_out="$tmp/$name.json" --benchmark_out_format=json
done
[ $found -eq 1 ] || echo "no benchmarks built (libbenchmark-dev missing?)"
# two desktop hex editors opening the file size bench_hexedit loads, for comparison
if command -v Xvfb >/dev/null 2>&1 && command -v xdotool >/dev/null 2>&1; then
    echo "== hex editors for comparison"
    for mb in 100 1024; do
        "$root/scripts/bench_hexedit_compare.sh" $mb
    done | tee "$tmp/compare.txt"
fi
# the serial page and PuTTY on the same pty streams, whole-process CPU of each
host="$build/bench/serial_host.d/lark_serial_host"
if [ -x "$host" ] && command -v putty >/dev/null 2>&1 && command -v socat >/dev/null 2>&1; then
    echo "== serial page against PuTTY"
    python3 "$root/scripts/serial_vs_putty.py" "$host" "$tmp/records_putty.json" --mb "${PUTTY_MB:-5}" --rounds "${PUTTY_ROUNDS:-3}"
fi
# the PID page against larksim's board at 5 channels x 1 kHz, whole-process CPU
pidhost="$build/bench/pid_host.d/lark_pid_host"
if [ -x "$pidhost" ] && [ -x "$build/larksim" ]; then
    echo "== PID page live"
    python3 "$root/scripts/pid_cpu.py" "$pidhost" "$build/larksim" "$tmp/records_pid.json" --rounds 2
fi
# the plot window alone under 16 channels x 10 kHz played by larksim into a pty
plothost="$build/bench/plot_host.d/lark_plot_host"
if [ -x "$plothost" ] && [ -x "$build/larksim" ]; then
    echo "== plot window live over a pty"
    python3 "$root/scripts/plot_stall.py" "$plothost" "$build/larksim" "$tmp/records_plot.json" --rounds 2
fi
# start-up to the first window and idle CPU, ours and the desktop peers taking turns
if command -v Xvfb >/dev/null 2>&1 && command -v xev >/dev/null 2>&1; then
    echo "== start-up and idle beside the peers"
    python3 "$root/scripts/peers_compare.py" "$build/larkTools" "$tmp/records_peers.json" \
        --rounds "${PEER_ROUNDS:-3}" --idle "${PEER_IDLE_SECONDS:-20}"
fi
if command -v Xvfb >/dev/null 2>&1; then
    echo "== the whole program idle"
    python3 "$root/scripts/idle_cpu.py" "$build/larkTools" "${IDLE_SECONDS:-60}" "$tmp/records_idle.json"
fi
echo
python3 "$root/scripts/bench_report.py" "$tmp" "$root/bench/report.json"
