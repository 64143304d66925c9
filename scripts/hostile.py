#!/usr/bin/env python3
"""Hostile peers against the whole program (lark_hostile_host, offscreen), all on
loopback or a pty pair, each bounded in count and time:

  tcp-waves    2,000 TCP clients in waves of 200: connect, send 1 KB, leave
  udp-flood    100,000 datagrams of 512 bytes, as fast as the socket takes them
  camera-huge  a camera board announcing a 2 GB image frame, then trickling bytes
  pid-random   a PID board sending random bytes at full speed (600 s; --quick 30 s)

For each: the longest event-loop stall the program reported, its peak resident
memory, how long the peer ran and the notices the page gave. Prints a table; with
--out, writes the rows as JSON.

usage: hostile.py BUILD [--quick] [--only NAME,NAME] [--out FILE]"""
import argparse
import json
import os
import random
import re
import select
import socket
import subprocess
import sys
import time

from larkproc import rss_mb, stop

STALL_LIMIT_MS = 100


def free_port():
    s = socket.socket()
    s.bind(('127.0.0.1', 0))
    port = s.getsockname()[1]
    s.close()
    return port


class Host:
    """The program with one page's link open; its reports are taken in while a peer runs."""

    def __init__(self, build, mode, port):
        exe = os.path.join(build, 'bench', 'hostile_host.d', 'lark_hostile_host')
        self.proc = subprocess.Popen([exe, mode, port], stdout=subprocess.PIPE, text=True,
                                     env=dict(os.environ, QT_QPA_PLATFORM='offscreen'))
        # each notice once, with the second of the run it first came in: a port closed
        # half way through is read differently from one closed at the end
        self.stall, self.peak, self.notices, self.seen = 0, 0.0, [], set()
        self.start = time.time()
        self.ready = False
        deadline = time.time() + 30
        while not self.ready and time.time() < deadline:
            self.poll(0.5)
        if not self.ready:
            raise RuntimeError('%s: the program never opened its link' % mode)

    def poll(self, timeout=0.0):
        self.peak = max(self.peak, rss_mb(self.proc.pid))
        while True:
            ready, _, _ = select.select([self.proc.stdout], [], [], timeout)
            if not ready:
                return
            line = self.proc.stdout.readline()
            if not line:
                raise RuntimeError('the program ended')
            line = line.rstrip('\n')
            if line == 'ready':
                self.ready = True
            elif line.startswith('stall '):
                self.stall = max(self.stall, int(line.split()[1]))
            elif line == 'reopened':
                self.notices.append('+%d s reopened' % (time.time() - self.start))
            elif line.startswith('notify ') and line[7:] not in self.seen:
                self.seen.add(line[7:])
                self.notices.append('+%d s %s' % (time.time() - self.start, line[7:]))
            timeout = 0.0

    def settle(self, seconds=2.0):
        # what the program still holds to read shows in the stall and memory of the next seconds
        end = time.time() + seconds
        while time.time() < end:
            self.poll(0.2)

    def stop(self):
        stop(self.proc)


def tcp_waves(host, port, quick):
    clients, wave = 2000, 200
    payload = b'x' * 1024
    for _ in range(clients // wave):
        socks = []
        for _ in range(wave):
            s = socket.create_connection(('127.0.0.1', port), timeout=10)
            s.sendall(payload)
            socks.append(s)
        host.poll(0.05)
        for s in socks:
            s.close()
        host.poll(0.05)
    return '%d clients, waves of %d' % (clients, wave)


def udp_flood(host, port, quick):
    s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    payload = b'u' * 512
    for i in range(100000):
        s.sendto(payload, ('127.0.0.1', port))
        if i % 5000 == 0:
            host.poll()
    s.close()
    return '100000 datagrams of 512 B'


def camera_huge(host, port, quick):
    import struct
    seconds = 30 if quick else 120
    s = socket.create_connection(('127.0.0.1', port), timeout=10)
    # an image frame whose length field claims 2 GB: "LARK", slot, length, command
    s.sendall(b'LARK' + bytes([0]) + struct.pack('<I', 0x7FFFFFF0) + bytes([0x02]))
    chunk = bytes(65536)
    sent, end = 0, time.time() + seconds
    while time.time() < end:
        s.sendall(chunk)
        sent += len(chunk)
        host.poll(0.01)
    s.close()
    return '2 GB frame announced, %d MB trickled in %d s' % (sent // 1000000, seconds)


def pid_random(host, board_path, quick):
    seconds = 30 if quick else 600
    fd = os.open(board_path, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
    rnd = random.Random(7)
    block = bytes(rnd.getrandbits(8) for _ in range(1 << 16))
    sent, end = 0, time.time() + seconds
    while time.time() < end:
        try:
            sent += os.write(fd, block[rnd.randrange(1 << 15):])
        except BlockingIOError:
            host.poll(0.005)
            continue
        host.poll()
    os.close(fd)
    return '%d MB random bytes in %d s' % (sent // 1000000, seconds)


def pty_pair():
    p = subprocess.Popen(['socat', '-d', '-d', 'pty,raw,echo=0', 'pty,raw,echo=0'],
                         stderr=subprocess.PIPE, text=True)
    names = []
    while len(names) < 2:
        m = re.search(r'PTY is (/dev/pts/\d+)', p.stderr.readline())
        if m:
            names.append(m.group(1))
    return p, names[0], names[1]


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument('build')
    ap.add_argument('--quick', action='store_true')
    ap.add_argument('--only', default='')
    ap.add_argument('--out')
    opt = ap.parse_args()
    cases = [('tcp-waves', 'tcp-server', tcp_waves), ('udp-flood', 'udp', udp_flood),
             ('camera-huge', 'camera', camera_huge), ('pid-random', 'pid', pid_random)]
    only = set(filter(None, opt.only.split(',')))
    rows = []
    for name, mode, peer in cases:
        if only and name not in only:
            continue
        socat = None
        if mode == 'pid':
            socat, program_end, board_end = pty_pair()
            target, arg = board_end, program_end[5:]
        else:
            target = free_port()
            arg = str(target)
        host = Host(opt.build, mode, arg)
        start = time.time()
        try:
            what = peer(host, target, opt.quick)
            host.settle()
        finally:
            host.stop()
            if socat:
                socat.kill()
        rows.append({'case': name, 'what': what, 'seconds': round(time.time() - start, 1),
                     'peak_rss_mb': round(host.peak, 1), 'longest_stall_ms': host.stall,
                     'notices': host.notices})
        r = rows[-1]
        print('%-12s %-45s %7.1f s  peak %7.1f MB  stall %5d ms%s' % (
            r['case'], r['what'], r['seconds'], r['peak_rss_mb'], r['longest_stall_ms'],
            '' if r['longest_stall_ms'] < STALL_LIMIT_MS else '  (over %d ms)' % STALL_LIMIT_MS), flush=True)
        for n in r['notices']:
            print('             notice: %s' % n)
    if opt.out:
        with open(opt.out, 'w') as f:
            json.dump(rows, f, ensure_ascii=False, indent=1)
    return 0 if all(r['longest_stall_ms'] < STALL_LIMIT_MS for r in rows) else 1


if __name__ == '__main__':
    sys.exit(main())
