#!/usr/bin/env python3
"""CPU the whole program uses while it sits idle with no port open: started as a user
starts it (under Xvfb without a display), left alone for a few seconds, then measured
from /proc over SECONDS. Prints percent of a core; writes a report record to OUT.

usage: idle_cpu.py PROGRAM [SECONDS] [OUT.json]"""
import json
import os
import subprocess
import sys
import time

program = sys.argv[1]
seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 60
out = sys.argv[3] if len(sys.argv) > 3 else None
tick = os.sysconf('SC_CLK_TCK')


def cpu(pid):
    with open('/proc/%d/stat' % pid) as f:
        fields = f.read().rsplit(')', 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / tick


xvfb = None
env = dict(os.environ)
env.pop('QT_QPA_PLATFORM', None)
if not env.get('DISPLAY'):
    xvfb = subprocess.Popen(['Xvfb', ':93', '-screen', '0', '1280x800x24', '-nolisten', 'tcp'],
                            stderr=subprocess.DEVNULL)
    env['DISPLAY'] = ':93'
    time.sleep(1)
proc = subprocess.Popen([program], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    time.sleep(5)  # start-up is not idling
    c0 = cpu(proc.pid)
    time.sleep(seconds)
    used = cpu(proc.pid) - c0
finally:
    proc.terminate()
    proc.wait()
    if xvfb:
        xvfb.terminate()
percent = used / seconds * 100
print('idle CPU over %g s: %.3f %% of a core' % (seconds, percent))
if out:
    with open(out, 'w') as f:
        json.dump([{'name': 'idle/cpu_percent_of_core', 'value': percent, 'unit': '%',
                    'cores': os.cpu_count()}], f, indent=1)
        f.write('\n')
