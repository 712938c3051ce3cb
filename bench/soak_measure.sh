#!/usr/bin/env bash
# Long-run memory of `tallybot --headless` against a private ngircd and the game simulator: a
# capture every 8 s, a channel command at a fixed pace, the query at a chosen interval. Prints the
# resident memory every 30 s and, at the end, the growth per hour after the warm-up.
#   bench/soak_measure.sh [--minutes N] [--query-ms N] [--command-s N] [--warmup-min N] BUILD_DIR
# With --short (the benchmark run of the test script) it only says that it was skipped.
# Defaults: 20 minutes, QueryTime 1000, a command every 60 s, 5 minutes of warm-up.
set -euo pipefail
minutes=20 query_ms=1000 command_s=60 warmup_min=5
while [ $# -gt 1 ]; do
    case "$1" in
    --minutes) minutes=$2 ;;
    --query-ms) query_ms=$2 ;;
    --command-s) command_s=$2 ;;
    --warmup-min) warmup_min=$2 ;;
    --short) echo "soak: skipped in the short run (a soak takes minutes: bench/soak_measure.sh BUILD_DIR)"; exit 0 ;;
    *) echo "soak_measure: unknown option $1" >&2; exit 2 ;;
    esac
    shift 2
done
build=${1:?usage: soak_measure.sh [options] BUILD_DIR}
bin="$build/bin"
[ -x "$bin/tallybot" ] && [ -x "$bin/tallybot-gamesim" ] || { echo "soak_measure: no binaries in $bin" >&2; exit 0; }
ngircd=$(command -v ngircd || echo /usr/sbin/ngircd)
[ -x "$ngircd" ] || { echo "soak_measure: ngircd is not installed" >&2; exit 0; }
. "$(dirname "$0")/../tools/script_helpers.sh"

work=$(mktemp -d)
cleanup() { kill "${bot:-}" "${user:-}" "${sim:-}" "${ircd:-}" 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$work"; }
trap cleanup EXIT

irc_port=$(free_port)
game_port=$(free_port)
write_ngircd_conf "$work/ngircd.conf" "$irc_port" irc.soak.test "soak" soak soak@example.org "soak"
"$ngircd" -n -f "$work/ngircd.conf" >"$work/ngircd.log" 2>&1 &
ircd=$!
for _ in $(seq 50); do grep -q " ready" "$work/ngircd.log" && break; sleep 0.1; done

# A capture every 8 s for the whole run (the score and the team score rise together).
{
    printf 'engine Q3\nhost Soak Arena\nmap q3ctf1\ngametype 4\ntimelimit 20\ncapturelimit 10000\ntime 10:00\n'
    printf 'teamscore 0 0\nplayer Alice red 0 50\nplayer Bob blue 0 70\n'
    seconds=$((minutes * 60 + 60))
    for ((t = 8, n = 1; t < seconds; t += 8, n++)); do
        printf 'at %d score Alice %d\nat %d teamscore %d 0\n' "$t" $((n * 5)) "$t" "$n"
    done
} >"$work/match.txt"
"$bin/tallybot-gamesim" --port "$game_port" --script "$work/match.txt" >/dev/null &
sim=$!

mkdir -p "$work/home/Profiles"
printf '[General]\r\nDescription=Soak CTF\r\n[Game]\r\nEngine=2\r\nName=\r\nType=4\r\n[AdvInfo]\r\nAdvanced=1\r\nAutoTeams=1\r\nScoring=2\r\nScorePerCap=5\r\n[Posting]\r\nPostScoreChange=1\r\nStatusPosting=1\r\nInterval=0\r\nIntervalTime=1\r\nIntervalInfo=5\r\n[Report]\r\nUseCustom=0\r\n' \
    >"$work/home/Profiles/Soak.igp"
printf '[IRC]\r\n1Server=127.0.0.1\r\n1Port=%s\r\n1Channel=#soak\r\n1Nick=Tallybot\r\n[Game]\r\n1Host=127.0.0.1:%s\r\nQueryTime=%s\r\n[Autopost]\r\nSendDelay=0\r\n[Extras]\r\nIdentEnabled=0\r\n' \
    "$irc_port" "$game_port" "$query_ms" >"$work/home/Tallybot.ini"
# The channel user: joins, then asks "!ssinfo" at the chosen pace and reads every answer.
python3 - "$irc_port" "$command_s" >"$work/user.log" 2>&1 <<'PY' &
import socket, sys, time
port, pace = int(sys.argv[1]), float(sys.argv[2])
s = socket.create_connection(("127.0.0.1", port))
s.sendall(b"NICK alice\r\nUSER alice 0 * :alice\r\nJOIN #soak\r\n")
s.settimeout(0.2)
buf, answers, captures, asked, nxt = b"", 0, 0, 0, time.time() + 5
while True:
    try:
        data = s.recv(4096)
        if not data:
            break
        buf += data
        *lines, buf = buf.split(b"\r\n")
        for line in lines:
            if line.startswith(b"PING"):
                s.sendall(b"PONG" + line[4:] + b"\r\n")
            elif line.startswith(b":Tallybot!") and b" PRIVMSG #soak :" in line:
                answers += b"Hostname:" in line
                captures += b"Capped by" in line
    except socket.timeout:
        pass
    if time.time() >= nxt:
        s.sendall(b"PRIVMSG #soak :!ssinfo\r\n")
        asked += 1
        nxt += pace
        print(f"{captures} captures posted, {asked} commands asked, {answers} answered", flush=True)
PY
user=$!
"$bin/tallybot" --home "$work/home" --headless >"$work/bot.out" 2>"$work/bot.err" &
bot=$!

rss() { awk '/^VmRSS:/ {print $2}' "/proc/$bot/status"; }
printf '%8s %12s\n' "minute" "VmRSS KiB"
sample_s=${SOAK_SAMPLE_S:-30} # seconds between samples
samples=$((minutes * 60 / sample_s))
warm_rss="" warm_at=""
for ((i = 1; i <= samples; i++)); do
    sleep "$sample_s"
    kill -0 "$bot" 2>/dev/null || { echo "soak_measure: tallybot ended early" >&2; cat "$work/bot.err" >&2; exit 1; }
    now=$(rss)
    printf '%8.1f %12s\n' "$(awk -v t=$((i * sample_s)) 'BEGIN { print t / 60 }')" "$now"
    if [ -z "$warm_rss" ] && [ $((i * sample_s)) -ge $((warmup_min * 60)) ]; then warm_rss=$now warm_at=$i; fi
done
last=$(rss)
printf 'QueryTime %s ms, a command every %s s, %s min: %s\n' "$query_ms" "$command_s" "$minutes" \
    "$(tail -1 "$work/user.log")"
if [ -n "$warm_rss" ] && [ "$samples" -gt "$warm_at" ]; then
    awk -v a="$warm_rss" -v b="$last" -v t=$(((samples - warm_at) * sample_s)) \
        'BEGIN { printf "growth after warm-up: %d KiB over %.1f min = %.0f KiB per hour\n", b - a, t / 60, (b - a) * 3600 / t }'
fi
