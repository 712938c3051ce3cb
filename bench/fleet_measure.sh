#!/usr/bin/env bash
# A league on one machine: N `tallybot --headless` instances, each with its own home, polling one
# game-server simulator once a second (no IRC). Prints their total proportional memory (PSS from
# /proc/PID/smaps_rollup, so shared library pages count once) and CPU, and the same per instance.
#   bench/fleet_measure.sh [--short | --seconds S] [N] [BUILD_DIR]
# Defaults: N 100, 30 s, build/release; --short (as bench/run.sh --short calls it): 3 instances, 3 s.
set -euo pipefail
seconds=30
count=100
if [ "${1:-}" = "--short" ]; then seconds=3; count=3; shift; fi
if [ "${1:-}" = "--seconds" ]; then seconds=$2; shift 2; fi
if [[ ${1:-} =~ ^[0-9]+$ ]]; then count=$1; shift; fi
build=${1:-build/release}
here=$(cd "$(dirname "$0")" && pwd)
bin="$build/bin"
[ -x "$bin/tallybot" ] && [ -x "$bin/tallybot-gamesim" ] || { echo "fleet_measure: no binaries in $bin" >&2; exit 0; }
# shellcheck source=tools/script_helpers.sh
. "$here/../tools/script_helpers.sh"

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}" ${sim:+"$sim"}; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

port=$(free_port)
"$bin/tallybot-gamesim" --port "$port" >"$work/gamesim.log" 2>&1 &
sim=$!
for ((i = 1; i <= count; ++i)); do
    home="$work/bot$i"
    mkdir -p "$home"
    printf '[Game]\r\n1Host=127.0.0.1:%s\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n' "$port" >"$home/Tallybot.ini"
    "$bin/tallybot" --home "$home" --headless >"$home/stdout" 2>"$home/stderr" &
    pids+=($!)
done

# Every instance has found the server before the clock starts.
deadline=$((SECONDS + 60 + count / 2))
for ((i = 1; i <= count; ++i)); do
    until grep -q '^Game server: ONLINE' "$work/bot$i/stdout" 2>/dev/null; do
        ((SECONDS < deadline)) || { echo "fleet_measure: bot$i never came online" >&2; cat "$work/bot$i/stderr" >&2; exit 1; }
        sleep 0.2
    done
done
sleep 2

cpu_ticks() { # total utime + stime of the instances
    local pid total=0
    for pid in "${pids[@]}"; do
        total=$((total + $(awk '{print $14 + $15}' "/proc/$pid/stat")))
    done
    echo "$total"
}
start=$(cpu_ticks)
sleep "$seconds"
end=$(cpu_ticks)
pss=0
for pid in "${pids[@]}"; do
    pss=$((pss + $(awk '/^Pss:/ {print $2}' "/proc/$pid/smaps_rollup")))
done
online=$(grep -l '^Game server: ONLINE' "$work"/bot*/stdout | wc -l)

ticks=$(getconf CLK_TCK)
awk -v n="$count" -v pss="$pss" -v t=$((end - start)) -v hz="$ticks" -v s="$seconds" -v online="$online" 'BEGIN {
    cpu = 100 * t / hz / s
    printf "%-58s %16s\n", "fleet of " n " headless instances polling 1/s", online " online"
    printf "%-58s %16s\n", "fleet: total PSS KiB (MiB)", sprintf("%d (%.1f)", pss, pss / 1024)
    printf "%-58s %16s\n", "fleet: PSS per instance KiB", sprintf("%d", pss / n)
    printf "%-58s %15.3f%%\n", "fleet: CPU of one core over " s " s, all instances", cpu
    printf "%-58s %15.4f%%\n", "fleet: CPU per instance", cpu / n
}'
