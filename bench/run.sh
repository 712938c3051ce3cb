#!/usr/bin/env bash
# Runs every benchmark program of a build and the measurement scripts, and prints one table:
# replies parsed per engine family, template expansions, IRC lines, the latency from a datagram to
# the channel line, the headless process's memory and CPU, and the time to the first query.
#   bench/run.sh [--short] [BUILD_DIR]     (default BUILD_DIR: build/release)
# --short runs each measurement briefly, so CI keeps the programs from rotting.
set -euo pipefail
short=0
if [ "${1:-}" = "--short" ]; then short=1; shift; fi
build=${1:-build/release}
here=$(cd "$(dirname "$0")" && pwd)
min_time=0.5
[ "$short" = 1 ] && min_time=0.01
shopt -s nullglob
status=0

printf '%-58s %16s %14s\n' "measurement" "per second" "time/op"
for b in "$build"/bench/*_bench; do
    out=$(mktemp)
    if ! "$b" --benchmark_min_time="$min_time" --benchmark_format=csv >"$out" 2>/dev/null; then
        echo "$(basename "$b"): failed" >&2
        status=1
    fi
    # The CSV header names the columns; user counters (p50_us, p99_us) come after the standard ones.
    awk -F, -v prog="$(basename "$b" _bench)" '
        /^name,/ { for (i = 1; i <= NF; ++i) { h = $i; gsub(/"/, "", h); col[h] = i }; next }
        !("name" in col) || $1 == "" { next }
        {
            name = $1; gsub(/"/, "", name); sub(/^BM_/, "", name); name = prog ": " name
            if (col["error_occurred"] && $col["error_occurred"] == "true") {
                msg = $col["error_message"]; gsub(/"/, "", msg)
                printf "%-58s %16s %14s\n", name, "skipped:", msg; next
            }
            manual = name ~ /manual_time/
            t = manual ? $col["real_time"] : $col["cpu_time"]; unit = $col["time_unit"]; gsub(/"/, "", unit)
            s = t; if (unit == "ns") s = t / 1e9; else if (unit == "us") s = t / 1e6; else if (unit == "ms") s = t / 1e3
            rate = $col["items_per_second"]
            if (rate == "" && s > 0) rate = 1 / s
            printf "%-58s %16.0f %11.3f %s\n", name, rate, t, unit
            if (col["p50_us"] && $col["p50_us"] != "") {
                printf "%-58s %16s %11.1f us\n", prog ": median", "", $col["p50_us"]
                printf "%-58s %16s %11.1f us\n", prog ": 99th percentile", "", $col["p99_us"]
            }
        }' "$out"
    rm -f "$out"
done
for s in "$here"/*_measure.sh "$build"/bench/*_measure.sh; do
    [ -x "$s" ] || continue
    if [ "$short" = 1 ]; then "$s" --short "$build" || status=1; else "$s" "$build" || status=1; fi
done
exit "$status"
