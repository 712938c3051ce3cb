#!/usr/bin/env bash
# Runs every benchmark program of a build and prints one table.
#   bench/run.sh [--short] [BUILD_DIR]     (default BUILD_DIR: build/release)
# --short runs each measurement briefly, so CI keeps the programs from rotting.
set -euo pipefail
short=0
if [ "${1:-}" = "--short" ]; then short=1; shift; fi
build=${1:-build/release}
min_time=0.5
[ "$short" = 1 ] && min_time=0.01
shopt -s nullglob
printf '%-58s %16s %14s\n' "benchmark" "per second" "time/op"
for b in "$build"/bench/*_bench; do
    "$b" --benchmark_min_time="$min_time" --benchmark_format=csv 2>/dev/null \
        | awk -F, 'NR>1 && $1!="" {
              name=$1; gsub(/"/,"",name); t=$4; unit=$5; gsub(/"/,"",unit);
              s=t; if(unit=="ns") s=t/1e9; else if(unit=="us") s=t/1e6; else if(unit=="ms") s=t/1e3;
              rate=(s>0)?1/s:0;
              printf "%-58s %16.0f %11.3f %s\n", name, rate, t, unit }'
done
for s in "$build"/bench/*_measure.sh bench/*_measure.sh; do
    [ -x "$s" ] && "$s" $([ "$short" = 1 ] && echo --short) "$build"
done
exit 0
