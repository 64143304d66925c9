#!/usr/bin/env python3
"""The stream plot window under 16 channels of 10 kHz from larksim over a pty: a
recording of comma-separated lines (one millisecond of ten lines a chunk) is played by
`larksim replay` into a pty that lark_plot_host reads; after WARM seconds (the ten-second
window filled) the host's longest event-loop stall and its CPU over SECONDS are taken,
and its resident memory at the end.
Prints them for each round and the machine's load average; writes report records to
OUT when given.

usage: plot_stall.py HOST LARKSIM [OUT.json] [--seconds N] [--warm N] [--rounds N]
Needs larksim and, without a display, Xvfb."""
import math
import os
import re
import struct
import subprocess
import sys
import tempfile
import time

from larkproc import cpu_seconds, ensure_display, larksim_pty, rss_mb, stop, write_records

CHANNELS = 16
RATE = 10000


def option(argv, name, default):
    if name in argv:
        i = argv.index(name)
        value = float(argv[i + 1])
        del argv[i:i + 2]
        return value
    return default


def recording(path, seconds):
    """larksim's recording format: magic, then per chunk its microseconds and size
    (little-endian 8 and 4 bytes) and its bytes"""
    per_chunk = RATE // 1000
    with open(path, 'wb') as f:
        f.write(b'LARKREC1')
        n = 0
        for ms in range(int(seconds * 1000)):
            lines = []
            for _ in range(per_chunk):
                lines.append(','.join('%.3f' % (100 * math.sin(n * 0.001 + c)) for c in range(CHANNELS)))
                n += 1
            data = ('\r\n'.join(lines) + '\r\n').encode()
            f.write(struct.pack('<qi', ms * 1000, len(data)) + data)


def run(host, larksim, rec, warm, seconds):
    sim, pts = larksim_pty([larksim, 'replay', rec, 'pty'])
    try:
        proc = subprocess.Popen([host, pts], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        try:
            # Qt's own warnings may come first
            while True:
                line = proc.stdout.readline()
                if not line:
                    raise RuntimeError('lark_plot_host did not open %s' % pts)
                if line.strip() == 'open':
                    break
            start = time.monotonic()
            stalls, c0, t0 = [], None, None
            while time.monotonic() - start < warm + seconds:
                line = proc.stdout.readline()
                if not line:
                    raise RuntimeError('lark_plot_host ended')
                if c0 is None and time.monotonic() - start >= warm:
                    c0, t0 = cpu_seconds(proc.pid), time.monotonic()
                m = re.match(r'stall (\d+)', line)
                if m and c0 is not None:
                    stalls.append(int(m.group(1)))
            cpu = (cpu_seconds(proc.pid) - c0) / (time.monotonic() - t0) * 100
            return max(stalls), cpu, rss_mb(proc.pid)
        finally:
            stop(proc)
    finally:
        stop(sim)


def main():
    ensure_display()
    argv = sys.argv[1:]
    seconds = option(argv, '--seconds', 20)
    warm = option(argv, '--warm', 11)
    rounds = int(option(argv, '--rounds', 2))
    host, larksim = argv[0], argv[1]
    out = argv[2] if len(argv) > 2 else None
    with tempfile.TemporaryDirectory() as tmp:
        rec = os.path.join(tmp, 'plot16x10k.rec')
        recording(rec, warm + seconds + 5)
        results = []
        for _ in range(rounds):
            stall, cpu, rss = run(host, larksim, rec, warm, seconds)
            load = os.getloadavg()
            print('plot window, 16 channels x 10 kHz over a pty: longest stall %d ms, CPU %.1f %% of a core,'
                  ' %.0f MB resident at the end (load average %.2f %.2f %.2f)' % ((stall, cpu, rss) + load), flush=True)
            results.append((stall, cpu, rss))
    if out:
        write_records(out, [
            {'name': 'plot_live/max_stall_ms', 'value': max(r[0] for r in results), 'unit': 'ms'},
            {'name': 'plot_live/cpu_percent_of_core', 'value': min(r[1] for r in results), 'unit': '%',
             'cores': os.cpu_count()},
            {'name': 'plot_live/rss_mb_at_end', 'value': round(max(r[2] for r in results), 1), 'unit': 'MB'}])


if __name__ == '__main__':
    main()
