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

from larkproc import ensure_display, run_seconds

ensure_display()
program = sys.argv[1]
seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 60
out = sys.argv[3] if len(sys.argv) > 3 else None

proc = subprocess.Popen([program], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
try:
    time.sleep(5)  # start-up is not idling
    c0 = run_seconds(proc.pid)
    time.sleep(seconds)
    used = run_seconds(proc.pid) - c0
finally:
    proc.terminate()
    proc.wait()
percent = used / seconds * 100
print('idle CPU over %g s: %.4f %% of a core' % (seconds, percent))
if out:
    with open(out, 'w') as f:
        json.dump([{'name': 'idle/cpu_percent_of_core', 'value': percent, 'unit': '%',
                    'cores': os.cpu_count()}], f, indent=1)
        f.write('\n')
