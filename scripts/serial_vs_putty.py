#!/usr/bin/env python3
"""The serial page against PuTTY on the same streams: each stream is written into one
end of a socat pty pair while the other end is open in lark_serial_host (the whole
program with its serial page open) or in PuTTY (-serial), alternating, and the
whole-process CPU time of the receiving program is taken from /proc over the stream.
Prints CPU seconds per MB of each (the least of ROUNDS alternating runs) and their ratio
per stream; writes one report record per stream to OUT when given: the ratio as its
value, both sides' s/MB beside it.

usage: serial_vs_putty.py HOST [OUT.json] [--mb N] [--rounds N] [--only NAME,NAME]
Needs socat, putty and, without a display, Xvfb."""
import os
import random
import re
import signal
import subprocess
import sys
import time

from larkproc import TICK, cpu_seconds, ensure_display, write_records


def pty_pair():
    p = subprocess.Popen(['socat', '-d', '-d', 'pty,raw,echo=0', 'pty,raw,echo=0'],
                         stderr=subprocess.PIPE, text=True)
    names = []
    while len(names) < 2:
        line = p.stderr.readline()
        if not line:
            raise RuntimeError('socat printed no pty')
        m = re.search(r'PTY is (/dev/pts/\d+)', line)
        if m:
            names.append(m.group(1))
    return p, names[0], names[1]


def text_lines(size):
    line = ('temp=25.3 hum=40 状态正常 0123456789\r\n').encode('gb18030')
    return (line * (size // len(line) + 1))[:size]


def noise(size):
    rnd = random.Random(7)
    return bytes(rnd.getrandbits(8) for _ in range(size))


def write_stream(path, data, rate, chunk):
    fd = os.open(path, os.O_WRONLY | os.O_NOCTTY)
    start = time.monotonic()
    done = 0
    try:
        while done < len(data):
            if rate:
                due = start + done / rate
                wait = due - time.monotonic()
                if wait > 0:
                    time.sleep(wait)
            done += os.write(fd, data[done:done + chunk])
    finally:
        os.close(fd)


def wait_quiet(pid, settle=0.6):
    """until the process has used no CPU for settle seconds: it has taken all"""
    last = cpu_seconds(pid)
    quiet_since = time.monotonic()
    while time.monotonic() - quiet_since < settle:
        time.sleep(0.1)
        now = cpu_seconds(pid)
        if now - last > 1.5 / TICK:
            quiet_since = time.monotonic()
        last = now
    return last


def run(program, stream, host):
    socat, board, port = pty_pair()
    try:
        if program == 'ours':
            args = [host, port[len('/dev/'):]] + stream['flags']
            # its output goes to a file: a pipe nobody reads would stop it once full
            log = open('/tmp/lark_serial_host.log', 'w+')
            proc = subprocess.Popen(args, stdout=log, stderr=subprocess.STDOUT)
            deadline = time.monotonic() + 20
            while 'open' not in open(log.name).read():
                if proc.poll() is not None or time.monotonic() > deadline:
                    raise RuntimeError('lark_serial_host did not open %s: %s' % (port, open(log.name).read()))
                time.sleep(0.1)
        else:
            proc = subprocess.Popen(['putty', '-serial', port, '-sercfg', '921600,8,n,1,N'],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(2.0)  # start-up is not what is measured
        cpu0 = wait_quiet(proc.pid)
        t0 = time.monotonic()
        write_stream(board, stream['data'], stream['rate'], stream['chunk'])
        cpu1 = wait_quiet(proc.pid)
        wall = time.monotonic() - t0
        proc.send_signal(signal.SIGTERM)
        try:
            proc.wait(5)
        except subprocess.TimeoutExpired:
            proc.kill()
            proc.wait()
        return (cpu1 - cpu0) / (len(stream['data']) / 1e6), wall
    finally:
        socat.terminate()
        socat.wait()


def main():
    ensure_display()
    argv = sys.argv[1:]
    mb = 5
    rounds = 1
    if '--mb' in argv:
        i = argv.index('--mb')
        mb = float(argv[i + 1])
        del argv[i:i + 2]
    if '--rounds' in argv:
        i = argv.index('--rounds')
        rounds = int(argv[i + 1])
        del argv[i:i + 2]
    only = None
    if '--only' in argv:
        i = argv.index('--only')
        only = argv[i + 1].split(',')
        del argv[i:i + 2]
    host = argv[0]
    out = argv[1] if len(argv) > 1 else None
    size = int(mb * 1e6)
    text, rnd = text_lines(size), noise(size)
    streams = [
        {'name': 'text_400KBps_4000B', 'data': text, 'rate': 400e3, 'chunk': 4000, 'flags': []},
        {'name': 'text_hex_400KBps_4000B', 'data': text, 'rate': 400e3, 'chunk': 4000, 'flags': ['--hex']},
        {'name': 'text_400KBps_256B', 'data': text, 'rate': 400e3, 'chunk': 256, 'flags': []},
        {'name': 'text_hex_400KBps_256B', 'data': text, 'rate': 400e3, 'chunk': 256, 'flags': ['--hex']},
        {'name': 'log_400KBps_4000B', 'data': text, 'rate': 400e3, 'chunk': 4000, 'flags': ['--log']},
        {'name': 'text_full_speed', 'data': text, 'rate': 0, 'chunk': 4096, 'flags': []},
        {'name': 'text_hex_full_speed', 'data': text, 'rate': 0, 'chunk': 4096, 'flags': ['--hex']},
        {'name': 'noise_hex_400KBps_4000B', 'data': rnd, 'rate': 400e3, 'chunk': 4000, 'flags': ['--hex']},
        {'name': 'noise_hex_400KBps_256B', 'data': rnd, 'rate': 400e3, 'chunk': 256, 'flags': ['--hex']},
        {'name': 'noise_ascii_full_speed', 'data': rnd, 'rate': 0, 'chunk': 4096, 'flags': []},
    ]
    if only:
        streams = [s for s in streams if s['name'] in only]
    records = []
    cores = os.cpu_count()
    print('%-26s %12s %12s %7s' % ('stream (%g MB)' % mb, 'ours s/MB', 'PuTTY s/MB', 'ratio'))
    for s in streams:
        ours, theirs = [], []
        for _ in range(rounds):
            # alternating, so that a change in the machine's load hits both alike
            ours.append(run('ours', s, host)[0])
            theirs.append(run('putty', s, host)[0])
        a, b = min(ours), min(theirs)
        ratio = a / b if b > 0 else float('inf')
        print('%-26s %12.3f %12.3f %7.2f' % (s['name'], a, b, ratio), flush=True)
        # one record a stream: the ratio is the figure, both sides stand beside it
        records.append({'name': 'serial_vs_putty/%s' % s['name'], 'value': round(ratio, 3), 'unit': 'x',
                        'ours_s_per_MB': round(a, 4), 'putty_s_per_MB': round(b, 4), 'rounds': rounds,
                        'cores': cores})
    if out:
        write_records(out, records)


if __name__ == '__main__':
    main()
