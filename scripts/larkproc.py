"""What the measuring scripts share: a process's CPU time and memory as /proc counts
them, a display for programs that need one, and the records file of a measurement."""
import glob
import json
import os
import re
import signal
import subprocess
import sys

TICK = os.sysconf('SC_CLK_TCK')
XVFB_SH = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'xvfb.sh')


def cpu_seconds(pid):
    """User plus system CPU seconds of pid so far."""
    with open('/proc/%d/stat' % pid) as f:
        # the name in parentheses may hold spaces: count fields after its closing one
        fields = f.read().rsplit(')', 1)[1].split()
    # utime and stime are fields 14 and 15 of the whole line, 12 and 13 after the name
    return (int(fields[11]) + int(fields[12])) / TICK


def rss_mb(pid):
    """Resident memory of pid in MB; 0 once it has gone."""
    try:
        with open('/proc/%d/status' % pid) as f:
            for line in f:
                if line.startswith('VmRSS:'):
                    return int(line.split()[1]) / 1024.0
    except OSError:
        pass
    return 0.0


def run_seconds(pid):
    """CPU seconds of every thread of pid, from the scheduler's nanosecond counters:
    fine enough for an idle process, where clock ticks read zero for a minute"""
    total = 0
    for path in glob.glob('/proc/%d/task/*/schedstat' % pid):
        try:
            with open(path) as f:
                total += int(f.read().split()[0])
        except (OSError, ValueError, IndexError):
            pass  # a thread that just ended
    return total / 1e9


def ensure_display(screen='1280x800x24'):
    """Without DISPLAY, runs this script again under xvfb.sh, which starts Xvfb on a
    free display and stops it when the script ends; with one, returns. The programs
    measured must draw on X, so Qt's offscreen platform is dropped either way."""
    os.environ.pop('QT_QPA_PLATFORM', None)
    if os.environ.get('DISPLAY'):
        return
    args = [XVFB_SH, '--screen', screen, sys.executable] + sys.argv
    os.execv(XVFB_SH, args)


def stop(proc, seconds=5):
    """Ends proc as a user would, by SIGTERM, and kills it if it has not ended in time."""
    proc.send_signal(signal.SIGTERM)
    try:
        proc.wait(seconds)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.wait()


def larksim_pty(args):
    """Starts larksim with ARGS that make it open a pty; returns the process, its output
    still to be read or drained, and the pty's path from the first line naming one."""
    sim = subprocess.Popen(args, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    while True:
        line = sim.stdout.readline()
        if not line:
            sim.kill()
            raise RuntimeError('larksim printed no pty')
        m = re.search(r'/dev/pts/\d+', line)
        if m:
            return sim, m.group(0)


def write_records(path, records):
    """The records of one measurement, as bench_report.py gathers them."""
    with open(path, 'w') as f:
        json.dump(records, f, indent=1)
        f.write('\n')
