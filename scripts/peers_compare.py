#!/usr/bin/env python3
"""Start-up and idle CPU of the program beside the desktop peers Debian has (CuteCom,
GtkTerm, PuTTY, Packet Sender, Okteta, GHex), each started as a user starts it, with no
port open, taking turns so a change of the machine's load hits all alike.
 - start-up: from exec to the first top-level window mapped on the X server (xev on
   the root window sees the MapNotify), median of ROUNDS;
 - idle: CPU the whole process uses over IDLE seconds, a few seconds after start-up,
   from the scheduler's nanosecond counters of every thread, median of ROUNDS.
Prints a table; writes report records to OUT when given.

usage: peers_compare.py PROGRAM [OUT.json] [--rounds N] [--idle SECONDS] [--only NAME,...]
Needs xev (x11-utils) and, without a display, Xvfb."""
import os
import shutil
import select
import statistics
import subprocess
import sys
import tempfile
import time

from larkproc import ensure_display, run_seconds, stop, write_records

PEERS = [('cutecom', ['cutecom']), ('gtkterm', ['gtkterm']), ('putty', ['putty']),
         ('packetsender', ['packetsender']), ('okteta', ['okteta']), ('ghex', ['ghex'])]


def measure(argv, idle, env):
    xev = subprocess.Popen(['xev', '-root', '-event', 'substructure'], stdout=subprocess.PIPE)
    time.sleep(0.3)  # xev has selected the events once it runs
    t0 = time.monotonic()
    proc = subprocess.Popen(argv, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=env)
    try:
        startup = None
        seen = b''
        while startup is None:
            # a program that ends or never shows a window is reported, not waited for
            if not select.select([xev.stdout], [], [], 0.2)[0]:
                if proc.poll() is not None or time.monotonic() - t0 > 30:
                    raise RuntimeError('%s showed no window (exit status %s)' % (argv[0], proc.poll()))
                continue
            chunk = os.read(xev.stdout.fileno(), 65536)
            if not chunk:
                raise RuntimeError('xev ended')
            seen += chunk
            if b'\nMapNotify' in b'\n' + seen:
                startup = (time.monotonic() - t0) * 1000
        xev.terminate()
        xev.wait()
        time.sleep(4)  # what start-up left to do is not idling
        c0, w0 = run_seconds(proc.pid), time.monotonic()
        time.sleep(idle)
        # threads that end take their counts with them: a quiet program can read below zero
        percent = max(0.0, (run_seconds(proc.pid) - c0) / (time.monotonic() - w0) * 100)
        return startup, percent
    finally:
        stop(proc)
        if xev.poll() is None:
            xev.terminate()
            xev.wait()


def main():
    ensure_display()
    argv = sys.argv[1:]
    opts = {'--rounds': '3', '--idle': '60', '--only': ''}
    for key in opts:
        if key in argv:
            i = argv.index(key)
            opts[key] = argv[i + 1]
            del argv[i:i + 2]
    ours = os.path.abspath(argv[0])
    out = argv[1] if len(argv) > 1 else None
    programs = [('larkTools', [ours])]
    for name, cmd in PEERS:
        if shutil.which(cmd[0]):
            programs.append((name, cmd))
        else:
            print('%s: not installed, left out' % name)
    if opts['--only']:
        keep = opts['--only'].split(',')
        programs = [p for p in programs if p[0] in keep]
    # a home of their own, the same for every round: the peers' first-start work (caches,
    # settings) happens once before the rounds and never in a measured one
    home = tempfile.mkdtemp(prefix='larkpeers.')
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + '/.config',
               XDG_CACHE_HOME=home + '/.cache', XDG_DATA_HOME=home + '/.local/share')
    results = {name: [] for name, _ in programs}
    try:
        for name, cmd in list(programs):
            try:
                measure(cmd, 0.1, env)
            except RuntimeError as e:
                print('%s: left out: %s' % (name, e), flush=True)
                programs.remove((name, cmd))
                del results[name]
        for _ in range(int(opts['--rounds'])):
            for name, cmd in programs:
                results[name].append(measure(cmd, float(opts['--idle']), env))
    finally:
        shutil.rmtree(home, ignore_errors=True)
    records = []
    cores = os.cpu_count()
    print('%-14s %16s %18s' % ('program', 'start-up ms', 'idle % of a core'))
    for name, figures in results.items():
        start = statistics.median(f[0] for f in figures)
        idle = statistics.median(f[1] for f in figures)
        print('%-14s %16.0f %18.4f' % (name, start, idle), flush=True)
        records.append({'name': 'peers/%s/startup_to_window' % name, 'value': start, 'unit': 'ms',
                        'cores': cores})
        records.append({'name': 'peers/%s/idle_cpu_percent_of_core' % name, 'value': idle,
                        'unit': '%', 'cores': cores})
    if out:
        write_records(out, records)


if __name__ == '__main__':
    main()
