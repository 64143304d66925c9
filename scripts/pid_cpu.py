#!/usr/bin/env python3
"""Whole-process CPU of the program showing the PID page while larksim's PID board
reports five channels at 1 kHz with noise: lark_pid_host opens the page on the board's
pty and starts every channel; after WARM seconds (the ten-second window filled) the CPU
the host uses over SECONDS is taken from /proc. Prints percent of a core for the default
two curves and for all ten; writes report records to OUT when given.

usage: pid_cpu.py HOST LARKSIM [OUT.json] [--seconds N] [--warm N] [--rounds N]
Needs larksim and, without a display, Xvfb."""
import os
import subprocess
import sys
import time

from larkproc import cpu_seconds, ensure_display, larksim_pty, stop, write_records


def option(argv, name, default):
    if name in argv:
        i = argv.index(name)
        value = float(argv[i + 1])
        del argv[i:i + 2]
        return value
    return default


def run(host, larksim, flags, warm, seconds):
    sim, path = larksim_pty([larksim, 'pid', '--pty', '--noise', '2'])
    pts = path[len('/dev/'):]
    try:
        # the simulator logs every command: its output must keep draining
        sink = subprocess.Popen(['cat'], stdin=sim.stdout, stdout=subprocess.DEVNULL)
        log = open('/tmp/lark_pid_host.log', 'w+')
        proc = subprocess.Popen([host, pts] + flags, stdout=log, stderr=subprocess.STDOUT)
        try:
            deadline = time.monotonic() + 20
            while 'open' not in open(log.name).read():
                if proc.poll() is not None or time.monotonic() > deadline:
                    raise RuntimeError('lark_pid_host did not open %s: %s' % (pts, open(log.name).read()))
                time.sleep(0.1)
            time.sleep(warm)
            c0 = cpu_seconds(proc.pid)
            t0 = time.monotonic()
            time.sleep(seconds)
            used = cpu_seconds(proc.pid) - c0
            return used / (time.monotonic() - t0) * 100
        finally:
            stop(proc)
            sink.terminate()
    finally:
        stop(sim)


def main():
    ensure_display()
    argv = sys.argv[1:]
    seconds = option(argv, '--seconds', 10)
    warm = option(argv, '--warm', 11)
    rounds = int(option(argv, '--rounds', 1))
    host, larksim = argv[0], argv[1]
    out = argv[2] if len(argv) > 2 else None
    records = []
    for name, flags in (('two_curves', []), ('ten_curves', ['--all'])):
        figures = [run(host, larksim, flags, warm, seconds) for _ in range(rounds)]
        best = min(figures)
        print('PID page, 5 channels x 1 kHz, noise 2, %s: %.1f %% of a core (%s)'
              % (name, best, ', '.join('%.1f' % f for f in figures)), flush=True)
        records.append({'name': 'pid_live/%s/cpu_percent_of_core' % name, 'value': best,
                        'unit': '%', 'cores': os.cpu_count()})
    if out:
        write_records(out, records)


if __name__ == '__main__':
    main()
