#!/usr/bin/env python3
"""A long session of the serial page: the whole program (lark_serial_host, offscreen)
with its serial page open on a larksim board at full speed (--rate 1e9: it accepts no 0), first random bytes in the
HEX view, then text lines in log mode, each reopened in the same session. Every
INTERVAL seconds it samples the program's resident memory, its CPU share since the
last sample and the bytes it has read; it writes them to soak.csv and draws soak.png
(memory and CPU against megabytes received) in OUT, and prints the peak memory, the
longest event-loop stall and whether memory stayed under the bound. The link is
captured to OUT/capture.bin the whole time (--no-capture: not), and the bytes the boards
sent are set against those the capture holds.

usage: soak.py BUILD OUT [--hex-mb N] [--text-mb N] [--interval S] [--bound-mb N] [--no-capture]
Defaults are the full session: 2700 MB in HEX, then 330 MB of text (hours)."""
import argparse
import csv
import os
import re
import select
import signal
import subprocess
import sys
import time

from larkproc import cpu_seconds, rss_mb

BURST = 4096  # bytes of one larksim binary burst
LINE = 40     # about the bytes of one larksim GB18030 line
# larksim's text lines (sim/TextSource.cpp), to count the bytes a phase sends
LINES = ['temp=25.3 状态正常 <ok> 计数 %d', '电机转速 1500 rpm, 电流 0.42 A, 第%d行',
         'ADC: 1023 2047 3071 警告：电压偏低 #%d', '[info] 传感器初始化完成 (id=%d)']


def sent_bytes(kind, count):
    if kind == 'hex':
        return count * BURST
    fixed = [len((line % 0).encode('gb18030')) - 1 + 2 for line in LINES]
    total, n, width = 0, 0, 1
    while n < count:  # lines of the same number width, in one go per width
        end = min(count, 10 ** width)
        for k in range(4):
            first = n + (k - n) % 4
            if first < end:
                total += ((end - 1 - first) // 4 + 1) * (fixed[k] + width)
        n, width = end, width + 1
    return total


def read_mb(pid):
    # what the program has read so far, the port's bytes nearly all of it
    with open('/proc/%d/io' % pid) as f:
        for line in f:
            if line.startswith('rchar:'):
                return int(line.split()[1]) / 1e6
    return 0.0


def start_board(build, kind, count):
    args = [os.path.join(build, 'larksim'), 'text', '--pty', '--rate', '1000000000', '--count', str(count)]
    args += ['--kind', 'binary', '--burst', str(BURST)] if kind == 'hex' else ['--kind', 'lines']
    board = subprocess.Popen(args, stdout=subprocess.PIPE, text=True)
    line = board.stdout.readline()
    m = re.search(r'/dev/(pts/\d+)', line)
    if not m:
        board.kill()
        raise RuntimeError('larksim printed no pty: %r' % line)
    return board, m.group(1)


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument('build')
    ap.add_argument('out')
    ap.add_argument('--hex-mb', type=float, default=2700)
    ap.add_argument('--text-mb', type=float, default=330)
    ap.add_argument('--interval', type=float, default=10)
    ap.add_argument('--bound-mb', type=float, default=400)
    ap.add_argument('--no-capture', action='store_true')
    opt = ap.parse_args()
    os.makedirs(opt.out, exist_ok=True)
    env = dict(os.environ, QT_QPA_PLATFORM='offscreen')

    phases = [('hex', opt.hex_mb, int(opt.hex_mb * 1e6 / BURST)),
              ('text', opt.text_mb, int(opt.text_mb * 1e6 / LINE))]
    board, port = start_board(opt.build, 'hex', phases[0][2])
    capture = [] if opt.no_capture else ['--capture', os.path.join(opt.out, 'capture.bin')]
    host = subprocess.Popen([os.path.join(opt.build, 'bench', 'serial_host.d', 'lark_serial_host'), port,
                             '--hex', '--heartbeat'] + capture, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            text=True, env=env)
    rows, stall, phase, reopens, captured, cut = [], 0, 0, 0, 0, False
    # written as it goes, so that a session cut short (SIGTERM or Ctrl+C: the summary
    # and the curve of what was measured still come) leaves its samples
    table = open(os.path.join(opt.out, 'soak.csv'), 'w', newline='')
    w = csv.writer(table)
    w.writerow(['seconds', 'phase', 'read_mb', 'rss_mb', 'cpu_percent'])
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    start = time.time()
    last_t, last_cpu = start, 0.0
    next_sample = start + opt.interval
    try:
        while True:
            ready, _, _ = select.select([host.stdout], [], [], 0.5)
            if ready:
                line = host.stdout.readline()
                if not line:
                    raise RuntimeError('the program ended')
                if line.startswith('stall '):
                    stall = max(stall, int(line.split()[1]))
                elif line.startswith('captured '):
                    captured = int(line.split()[1])
            now = time.time()
            if now >= next_sample:
                cpu = cpu_seconds(host.pid)
                rows.append((round(now - start, 1), phases[phase][0], round(read_mb(host.pid), 1),
                             round(rss_mb(host.pid), 1), round(100 * (cpu - last_cpu) / (now - last_t), 1)))
                print('%8.0f s  %-4s  %8.1f MB read  %7.1f MB RSS  %5.1f %% CPU' % rows[-1], flush=True)
                w.writerow(rows[-1])
                table.flush()
                last_t, last_cpu = now, cpu
                next_sample += opt.interval
                # a change in the machine's port count closes the page's port (other
                # programs making /dev links do it): open it again, as a user would
                if len(rows) >= 2 and rows[-1][2] == rows[-2][2] and board.poll() is None:
                    reopens += 1
                    host.stdin.write('reopen %s %s\n' % (port, 'hex' if phase == 0 else 'text log'))
                    host.stdin.flush()
            if board.poll() is not None:
                # the board sent its count; the page may still be reading what the pty holds
                time.sleep(opt.interval)
                phase += 1
                if phase == len(phases):
                    break
                board, port = start_board(opt.build, 'text', phases[phase][2])
                host.stdin.write('reopen %s text log\n' % port)
                host.stdin.flush()
    except KeyboardInterrupt:
        print('cut short in phase %s' % phases[phase][0], flush=True)
        cut = True
    finally:
        table.close()
        if board.poll() is None:
            board.terminate()
        host.terminate()
        host.wait()

    peak = max(r[3] for r in rows) if rows else 0.0
    print('peak RSS %.1f MB (bound %.0f MB: %s), longest stall %d ms, %.1f MB read, %d reopens'
          % (peak, opt.bound_mb, 'kept' if peak < opt.bound_mb else 'EXCEEDED', stall,
             rows[-1][2] if rows else 0.0, reopens))
    if capture and cut:
        print('the capture holds %d bytes (what the boards sent is known for whole phases only)' % captured)
    elif capture:
        # bytes a closed port missed are gone before the page sees them: a reopen may
        # account for a shortfall, nothing may account for a surplus
        sent = sum(sent_bytes(kind, count) for kind, _, count in phases[:phase])
        print('boards sent %d bytes, the capture holds %d (%s), file %d bytes'
              % (sent, captured, 'all' if captured == sent else '%+d' % (captured - sent),
                 os.path.getsize(capture[1]) if os.path.exists(capture[1]) else -1))
    try:
        import matplotlib
        matplotlib.use('Agg')
        import matplotlib.pyplot as plt
    except ImportError:
        print('no matplotlib (python3-matplotlib): curve not drawn')
        return 0 if peak < opt.bound_mb else 1
    fig, ax = plt.subplots(figsize=(9, 5))
    ax.plot([r[2] for r in rows], [r[3] for r in rows], label='RSS (MB)', color='tab:blue')
    ax.axhline(opt.bound_mb, color='tab:red', linestyle='--', label='bound %.0f MB' % opt.bound_mb)
    ax.set_xlabel('MB received')
    ax.set_ylabel('RSS (MB)')
    cpu_ax = ax.twinx()
    cpu_ax.plot([r[2] for r in rows], [r[4] for r in rows], color='tab:gray', alpha=0.6, label='CPU (%)')
    cpu_ax.set_ylabel('CPU (%)')
    ax.legend(loc='upper left')
    ax.set_title('serial page soak: HEX, then text in log mode')
    fig.tight_layout()
    fig.savefig(os.path.join(opt.out, 'soak.png'))
    print('curve: %s' % os.path.join(opt.out, 'soak.png'))
    return 0 if peak < opt.bound_mb else 1


if __name__ == '__main__':
    sys.exit(main())
