#!/usr/bin/env bash
# Resident memory and CPU of `tallybot --headless` while it polls the game-server simulator once a
# second (no IRC).
#   bench/headless_measure.sh [--short] BUILD_DIR
# --short measures for 3 s instead of 30 s.
set -euo pipefail
seconds=30
if [ "${1:-}" = "--short" ]; then seconds=3; shift; fi
build=${1:?usage: headless_measure.sh [--short] BUILD_DIR}
bin="$build/bin"
[ -x "$bin/tallybot" ] && [ -x "$bin/tallybot-gamesim" ] || { echo "headless_measure: no binaries in $bin" >&2; exit 0; }

home=$(mktemp -d)
port=$(( 30000 + RANDOM % 20000 ))
cleanup() { kill "${sim:-}" "${bot:-}" 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$home"; }
trap cleanup EXIT

"$bin/tallybot-gamesim" --port "$port" >/dev/null &
sim=$!
mkdir -p "$home/Profiles"
printf '[Game]\r\n1Host=127.0.0.1:%s\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n' "$port" >"$home/Tallybot.ini"
"$bin/tallybot" --home "$home" --headless >"$home/stdout" 2>/dev/null &
bot=$!

ticks=$(getconf CLK_TCK)
cpu_ticks() { awk '{print $14 + $15}' "/proc/$bot/stat"; }
sleep 1
start=$(cpu_ticks)
sleep "$seconds"
end=$(cpu_ticks)
rss=$(awk '/^VmRSS:/ {print $2}' "/proc/$bot/status")
hwm=$(awk '/^VmHWM:/ {print $2}' "/proc/$bot/status")
cpu=$(awk -v t=$((end - start)) -v hz="$ticks" -v s="$seconds" 'BEGIN { printf "%.3f", 100 * t / hz / s }')
state=$(grep '^Game server:' "$home/stdout" | tail -1 | sed 's/^Game server: //')
printf '%-58s %16s\n' "headless polling 1/s ($state): VmRSS (VmHWM) KiB" "$rss ($hwm)"
printf '%-58s %15s%%\n' "headless polling 1/s: CPU over ${seconds} s" "$cpu"
