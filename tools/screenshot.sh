#!/usr/bin/env bash
# Takes docs/screenshot.png: Tallybot's main window on a virtual X display, connected to a local
# ngircd and polling tallybot-gamesim, grabbed by the window itself after a few seconds.
#
#   tools/screenshot.sh [BUILD_DIR] [OUTPUT.png] [WIDTHxHEIGHT]
#
# BUILD_DIR defaults to build/dev (tallybot and tallybot-gamesim are built there when missing),
# OUTPUT to docs/screenshot.png, the window size to 1280x800.
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$root/build/dev}"
output="${2:-$root/docs/screenshot.png}"
size="${3:-1280x800}"
case "$output" in /*) ;; *) output="$PWD/$output" ;; esac

for tool in Xvfb ngircd python3; do
    command -v "$tool" >/dev/null || { echo "screenshot: $tool is not installed" >&2; exit 1; }
done
if [[ ! -x "$build/bin/tallybot" || ! -x "$build/bin/tallybot-gamesim" ]]; then
    [[ -f "$build/CMakeCache.txt" ]] || cmake -S "$root" -B "$build" -G Ninja -DTALLYBOT_TESTS=OFF -DTALLYBOT_BENCH=OFF
    cmake --build "$build" --target tallybot tallybot-gamesim
fi

work="$(mktemp -d)"
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# shellcheck source=tools/script_helpers.sh
. "$root/tools/script_helpers.sh"
free_udp_pair() {
    python3 - <<'PY'
import socket
while True:
    a = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); a.bind(("127.0.0.1", 0)); p = a.getsockname()[1]
    try:
        b = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); b.bind(("127.0.0.1", p + 1)); print(p); break
    except OSError:
        pass
PY
}
wait_for() { # pattern file seconds
    for _ in $(seq 1 $(($3 * 10))); do grep -q "$1" "$2" 2>/dev/null && return 0; sleep 0.1; done
    echo "screenshot: gave up waiting for '$1' in $2" >&2; cat "$2" >&2; return 1
}

# Virtual display.
display=":$((90 + RANDOM % 100))"
width="${size%x*}"; height="${size#*x}"
Xvfb "$display" -screen 0 "$((width + 40))x$((height + 40))x24" -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)

# IRC server.
irc_port="$(free_port)"
write_ngircd_conf "$work/ngircd.conf" "$irc_port" irc.tallybot.test "Tallybot screenshot server" screenshot \
    admin@localhost "Welcome to the Tallybot screenshot server"
ngircd -n -f "$work/ngircd.conf" >"$work/ngircd.log" 2>&1 &
pids+=($!)

# Game server with a running CTF match.
game_port="$(free_udp_pair)"
cat >"$work/match.txt" <<'MATCH'
engine Q3
host ^1Zephra ^7CTF Server
map q3wctf2
gametype 4
gamename osp
time 14:20
timelimit 20
capturelimit 8
maxplayers 16
teamscore 3 2
player kavik red 31 42
player Vex red 24 57
player Moonfox red 12 33
player Dash blue 28 61
player Orin blue 19 48
player Tamsin blue 7 80
MATCH
"$build/bin/tallybot-gamesim" --port "$game_port" --script "$work/match.txt" >"$work/gamesim.log" 2>&1 &
pids+=($!)
wait_for "listening" "$work/gamesim.log" 10

# A home with the connection already in the history boxes.
home="$work/home"
mkdir -p "$home"
cp -r "$root/profiles/default" "$home/Profiles"
printf '[IRC]\r\n1Server=127.0.0.1\r\n1Port=%s\r\n1Channel=#tallybot\r\n1Nick=Tallybot\r\nShowPing=0\r\n[Game]\r\n1Host=127.0.0.1:%s\r\n' \
    "$irc_port" "$game_port" >"$home/Tallybot.ini"

mkdir -p "$(dirname "$output")"
rm -f "$output"
export DISPLAY="$display" QT_QPA_PLATFORM=xcb
export TALLYBOT_SCREENSHOT="$output" TALLYBOT_SCREENSHOT_AFTER_MS=5000 TALLYBOT_SCREENSHOT_SIZE="$size"
# "ConIRC" connects with the boxes as they are; the query starts through the remote channel.
"$build/bin/tallybot" --home "$home" ConIRC >"$work/tallybot.log" 2>&1 &
app=$!
sleep 1.5
"$build/bin/tallybot" --home "$home" --send ConGam || echo "screenshot: the query did not start" >&2
wait "$app" || true
[[ -s "$output" ]] || { echo "screenshot: no picture taken" >&2; cat "$work/tallybot.log" >&2; exit 1; }
echo "screenshot: $output"
