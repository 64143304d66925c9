#!/bin/sh
# Runs every fuzz target of a fuzz build for a bounded time (FUZZ_SECONDS, and at most
# FUZZ_RUNS executions when set) from its checked-in seeds.
# A crash, leak, timeout or sanitizer report makes libFuzzer stop with a failure; its
# input is kept in <build>/fuzz-artifacts/ and this script fails once all have run.
set -eu
build=$1
seconds=${FUZZ_SECONDS:-60}
# FUZZ_RUNS ends a target earlier, after that many executions
runs=${FUZZ_RUNS:+-runs=$FUZZ_RUNS}
seeds="$(cd "$(dirname "$0")/.." && pwd)/fuzz/corpus"
failed=""
mkdir -p "$build/fuzz-artifacts" "$build/fuzz-corpus"
for exe in "$build"/fuzz/fuzz_*; do
    [ -f "$exe" ] && [ -x "$exe" ] || continue
    name=$(basename "$exe")
    # inputs the fuzzer finds go to a corpus of the build's own; the seeds stay as checked in
    corpus="$build/fuzz-corpus/${name#fuzz_}"
    mkdir -p "$corpus"
    echo "== $name ($seconds s)"
    if ! QT_QPA_PLATFORM=offscreen "$exe" -max_total_time="$seconds" $runs -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$build/fuzz-artifacts/$name-" \
        "$corpus" "$seeds/${name#fuzz_}" 2>"$build/fuzz-artifacts/$name.log"; then
        tail -n 40 "$build/fuzz-artifacts/$name.log"
        failed="$failed $name"
    fi
    grep -E '^stat::number_of_executed_units|^Done [0-9]+ runs' "$build/fuzz-artifacts/$name.log" || true
done
if [ -n "$failed" ]; then
    echo "fuzzing found defects in:$failed (inputs in $build/fuzz-artifacts/)"
    exit 1
fi
