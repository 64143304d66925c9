#!/usr/bin/env python3
"""Merges the JSON files Google Benchmark wrote (one per benchmark executable) and the
hex editor comparison lines into one report: a list of records, one per figure, with
name, value, unit and the machine's core count. Prints a short table: per benchmark
its time and its main rate.

usage: bench_report.py <folder with bench_*.json, compare.txt, records_*.json> <report.json>"""
import glob
import json
import os
import re
import sys

folder, out_path = sys.argv[1], sys.argv[2]
cores = os.cpu_count()
records = []
table = []


def record(name, value, unit):
    records.append({'name': name, 'value': value, 'unit': unit, 'cores': cores})


def counter_unit(key):
    """units of the benchmarks' own counters, read from their names"""
    for suffix, unit in (('_per_s', '/s'), ('_ms_per_MB', 'ms/MB'), ('_s_per_MB', 's/MB'),
                         ('_us_per_sample', 'us'), ('_ms_avg', 'ms'), ('_ms_max', 'ms'),
                         ('_ms', 'ms'), ('_MB', 'MB'), ('_at_s', 's'), ('_bytes', 'B')):
        if key.endswith(suffix):
            return key[:-len(suffix)] + unit if unit == '/s' else unit
    return {'fps': 'frames/s', 'cpu_load': 'cores', 'peak_per_file': 'MB/MB'}.get(key, 'count')


def readable_time(value, unit):
    ns = value * {'ns': 1, 'us': 1e3, 'ms': 1e6, 's': 1e9}.get(unit, 1)
    for scale, name in ((1e9, 's'), (1e6, 'ms'), (1e3, 'us')):
        if ns >= scale:
            return '%.3g %s' % (ns / scale, name)
    return '%.3g ns' % ns


for path in sorted(glob.glob(os.path.join(folder, 'bench_*.json'))):
    exe = os.path.basename(path)[len('bench_'):-len('.json')]
    with open(path) as f:
        data = json.load(f)
    for b in data.get('benchmarks', []):
        if b.get('run_type') == 'aggregate' or b.get('error_occurred'):
            continue
        # how a run was timed is not part of what it measures
        name = exe + '/' + re.sub(r'/iterations:\d+|/real_time', '', b['name'])
        unit = b.get('time_unit', 'ns')
        record(name + '/real_time', b['real_time'], unit)
        record(name + '/cpu_time', b['cpu_time'], unit)
        rate = ''
        if 'bytes_per_second' in b:
            record(name + '/throughput', b['bytes_per_second'] / 2**20, 'MiB/s')
            rate = '%.1f MiB/s' % (b['bytes_per_second'] / 2**20)
        if 'items_per_second' in b:
            record(name + '/items', b['items_per_second'], 'items/s')
            rate = rate or '%.0f items/s' % b['items_per_second']
        skip = {'name', 'run_name', 'run_type', 'repetitions', 'repetition_index', 'threads',
                'iterations', 'real_time', 'cpu_time', 'time_unit', 'bytes_per_second',
                'items_per_second', 'family_index', 'per_family_instance_index', 'label',
                'aggregate_name', 'aggregate_unit'}
        for key, value in b.items():
            if key in skip or not isinstance(value, (int, float)):
                continue
            record(name + '/' + key, value, counter_unit(key))
            if not rate:
                rate = '%s %.3g' % (key, value)
        table.append((name, readable_time(b['real_time'], unit), rate))

# "Okteta: window with 100 MiB file after 1234 ms, RSS 56 MiB"
compare = os.path.join(folder, 'compare.txt')
if os.path.exists(compare):
    for line in open(compare):
        m = re.match(r'(\w+): window with (\d+) MiB file after (\d+) ms, RSS (\d+) MiB', line)
        if m:
            name = 'compare/%s/open_%sMiB' % (m.group(1), m.group(2))
            record(name + '/window_ms', int(m.group(3)), 'ms')
            record(name + '/rss', int(m.group(4)), 'MiB')
            table.append((name, m.group(3) + ' ms', 'RSS %s MiB' % m.group(4)))

# figures other scripts measured, already as records
for path in sorted(glob.glob(os.path.join(folder, 'records_*.json'))):
    with open(path) as f:
        extra = json.load(f)
    records.extend(extra)
    for r in extra:
        table.append((r['name'], '', '%.3g %s' % (r['value'], r['unit'])))

# a record a line, so that a figure and what stands beside it read (and diff) together
with open(out_path, 'w') as f:
    f.write('[\n' + ',\n'.join(json.dumps(r, ensure_ascii=False) for r in records) + '\n]\n')

width = max([len(t[0]) for t in table] + [9])
print('%-*s  %14s  %s' % (width, 'benchmark', 'time', 'rate'))
for name, time, rate in table:
    print('%-*s  %14s  %s' % (width, name, time, rate))
print('%d figures on %d cores in %s' % (len(records), cores, out_path))
