#!/usr/bin/env bash
# Builds the Debian package, installs it system-wide, runs the installed service against the game
# simulator and a private ngircd until the bot has answered in the channel, stops it, then does the
# same with two instances of the template unit (one per game server, two simulators), and removes
# the package again. Needs root; not part of the test suite, since it changes the system.
#   packaging/check-deb.sh [BUILD_DIR]        (default BUILD_DIR: build/release)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
[ "$(id -u)" -eq 0 ] || { echo "check-deb: run as root (it installs a package)" >&2; exit 2; }
if dpkg-query -W -f='${Status}' tallybot 2>/dev/null | grep -q "install ok installed"; then
    echo "check-deb: tallybot is already installed; remove it first" >&2
    exit 2
fi

# shellcheck source=tools/script_helpers.sh
. tools/script_helpers.sh
step() { printf '== %s\n' "$*"; }
fail() { printf 'check-deb: FAILED: %s\n' "$*" >&2; exit 1; }
# wait_for FILE PATTERN SECONDS
wait_for() {
    local deadline=$((SECONDS + $3))
    until grep -q -- "$2" "$1" 2>/dev/null; do
        ((SECONDS < deadline)) || return 1
        sleep 0.2
    done
}

step "building the package in $build"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTALLYBOT_TESTS=OFF >/dev/null
cmake --build "$build" --target package
deb=$(ls -t "$build"/tallybot_*.deb | head -n 1)
dpkg-deb --info "$deb" | sed -n '/Package:/,$p'
dpkg-deb --contents "$deb" | awk '{print $NF}'

work=$(mktemp -d)
bots=()
chmod 755 "$work"
cleanup() {
    [ -n "${bot:-}" ] && kill "$bot" 2>/dev/null || true
    for pid in "${bots[@]}"; do kill "$pid" 2>/dev/null || true; done
    [ -n "${sim2:-}" ] && kill "$sim2" 2>/dev/null || true
    [ -n "${watcher:-}" ] && kill "$watcher" 2>/dev/null || true
    [ -n "${sim:-}" ] && kill "$sim" 2>/dev/null || true
    [ -n "${ircd:-}" ] && kill "$ircd" 2>/dev/null || true
    wait 2>/dev/null || true
    if dpkg-query -W -f='${Status}' tallybot 2>/dev/null | grep -q "install ok installed"; then
        apt-get purge -y -qq tallybot >/dev/null 2>&1 || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

step "installing $deb"
apt-get install -y -qq "./$deb" >/dev/null
[ -x /usr/bin/tallybot ] && [ -x /usr/bin/tallybot-gamesim ] || fail "programs not in /usr/bin"
ls /usr/share/tallybot/Profiles/*.igp >/dev/null || fail "no profiles in /usr/share/tallybot/Profiles"
getent passwd tallybot >/dev/null || fail "no user tallybot"
[ "$(stat -c %U /var/lib/tallybot)" = tallybot ] || fail "/var/lib/tallybot does not belong to tallybot"
unit=/usr/lib/systemd/system/tallybot.service
[ -f "$unit" ] || unit=/lib/systemd/system/tallybot.service
[ -f "$unit" ] || fail "no unit file"
version=$(tallybot --version)
echo "$version"
[[ "$version" == "tallybot "* ]] || fail "unexpected --version output"

step "a private ngircd and the game simulator"
irc_port=$(free_port)
game_port=$(free_port)
write_ngircd_conf "$work/ngircd.conf" "$irc_port" irc.check.local "Tallybot package check" check check@localhost \
    "package check"
ngircd -n -f "$work/ngircd.conf" >"$work/ngircd.log" 2>&1 &
ircd=$!
wait_for "$work/ngircd.log" " ready" 10 || { cat "$work/ngircd.log"; fail "ngircd did not start"; }
tallybot-gamesim --port "$game_port" >"$work/gamesim.log" 2>&1 &
sim=$!

# The settings the operator writes before enabling the service.
printf '[IRC]\r\n1Server=127.0.0.1\r\n1Port=%s\r\n1Channel=#tally\r\n1Nick=Tallybot\r\n[Game]\r\n1Host=127.0.0.1:%s\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n' \
    "$irc_port" "$game_port" >/var/lib/tallybot/Tallybot.ini
chown tallybot:tallybot /var/lib/tallybot/Tallybot.ini

# A channel user who asks for the server info until the bot answers: watch_channel NICK CHANNEL...
watch_channel() {
    local nick=$1 channel
    shift
    exec 3<>"/dev/tcp/127.0.0.1/$irc_port"
    printf 'NICK %s\r\nUSER %s 0 * :package check\r\n' "$nick" "$nick" >&3
    for channel in "$@"; do printf 'JOIN %s\r\n' "$channel" >&3; done
    local next=$((SECONDS + 2)) line
    while :; do
        if IFS= read -r -t 1 line <&3; then
            printf '%s\n' "${line%$'\r'}"
            case $line in PING*) printf 'PONG %s\r\n' "${line#PING }" >&3 ;; esac
        fi
        if ((SECONDS >= next)); then
            for channel in "$@"; do printf 'PRIVMSG %s :!sinfo\r\n' "$channel" >&3; done
            next=$((SECONDS + 3))
        fi
    done
}
watch_channel watcher '#tally' >"$work/channel.log" 2>&1 &
watcher=$!

exec_start=$(sed -n 's/^ExecStart=//p' "$unit")
user=$(sed -n 's/^User=//p' "$unit")
echo "unit: $unit"
echo "ExecStart=$exec_start (User=$user)"
if [ -d /run/systemd/system ] && systemctl daemon-reload 2>/dev/null; then
    step "starting tallybot.service with systemctl"
    systemctl start tallybot.service
    use_systemd=1
else
    # No systemd as PID 1 here: the unit's ExecStart line, run as its user by hand (setpriv execs,
    # so the signal below reaches tallybot itself).
    step "systemd is not running; starting the unit's ExecStart as $user by hand"
    use_systemd=0
    cd /var/lib/tallybot
    # shellcheck disable=SC2086 # the unit's command line splits on blanks, as systemd does here
    setpriv --reuid="$user" --regid="$user" --init-groups -- $exec_start >"$work/bot.out" 2>"$work/bot.err" &
    bot=$!
    cd - >/dev/null
fi

step "waiting for the bot's answer in #tally"
if ! wait_for "$work/channel.log" ":Tallybot!.* PRIVMSG #tally :" 60; then
    echo "--- channel"; cat "$work/channel.log"
    echo "--- bot"; cat "$work/bot.out" "$work/bot.err" 2>/dev/null || journalctl -u tallybot --no-pager | tail -n 40
    fail "no channel line from the bot"
fi
grep -m 3 ":Tallybot!.* PRIVMSG #tally :" "$work/channel.log"

step "stopping the service"
if [ "$use_systemd" = 1 ]; then
    systemctl stop tallybot.service
    systemctl is-active tallybot.service >/dev/null && fail "still active"
else
    kill -TERM "$bot"
    status=0
    wait "$bot" || status=$?
    bot=
    [ "$status" -eq 0 ] || fail "exit status $status after SIGTERM"
fi
wait_for "$work/channel.log" ":Tallybot!.* QUIT" 10 || fail "the bot did not quit IRC"
grep -q "Application terminated normally" /var/lib/tallybot/Tallybot.log || fail "no normal end in Tallybot.log"
ls /var/lib/tallybot/Profiles/*.igp >/dev/null || fail "the home got no profiles"
echo "stopped normally; home: $(ls /var/lib/tallybot | tr '\n' ' ')"

step "a league: two instances of the template unit, one per game server"
template=/usr/lib/systemd/system/tallybot@.service
[ -f "$template" ] || template=/lib/systemd/system/tallybot@.service
[ -f "$template" ] || fail "no template unit"
if command -v systemd-analyze >/dev/null; then
    verify=$(cd "$work" && systemd-analyze verify "$template" "${template%@.service}@alpha.service" 2>&1) || true
    [ -z "$verify" ] || { echo "$verify"; fail "systemd-analyze verify complains about the template"; }
fi
game_port2=$(free_port)
tallybot-gamesim --port "$game_port2" >"$work/gamesim2.log" 2>&1 &
sim2=$!
kill "$watcher" 2>/dev/null || true
watch_channel watcher2 '#alpha' '#beta' >"$work/league.log" 2>&1 &
watcher=$!
declare -A port_of=([alpha]=$game_port [beta]=$game_port2)
for name in alpha beta; do
    home=/var/lib/tallybot/$name
    install -d -o tallybot -g tallybot -m 0750 "$home"
    printf '[IRC]\r\n1Server=127.0.0.1\r\n1Port=%s\r\n1Channel=#%s\r\n1Nick=Tb%s\r\n[Game]\r\n1Host=127.0.0.1:%s\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n' \
        "$irc_port" "$name" "$name" "${port_of[$name]}" >"$home/Tallybot.ini"
    chown tallybot:tallybot "$home/Tallybot.ini"
    if [ "$use_systemd" = 1 ]; then
        systemctl start "tallybot@$name.service"
    else
        exec_start=$(sed -n 's/^ExecStart=//p' "$template")
        cd "$home"
        # shellcheck disable=SC2086 # split on blanks, as systemd does here
        setpriv --reuid=tallybot --regid=tallybot --init-groups -- ${exec_start//%i/$name} \
            >"$work/$name.out" 2>"$work/$name.err" &
        bots+=($!)
        cd - >/dev/null
    fi
done
for name in alpha beta; do
    if ! wait_for "$work/league.log" ":Tb$name!.* PRIVMSG #$name :" 60; then
        echo "--- channels"; cat "$work/league.log"
        cat "$work/$name.out" "$work/$name.err" 2>/dev/null || journalctl -u "tallybot@$name" --no-pager | tail -n 40
        fail "no channel line from instance $name"
    fi
    grep -m 1 ":Tb$name!.* PRIVMSG #$name :" "$work/league.log"
    # Remote control through the socket in the instance's home, with the unit's private /tmp.
    setpriv --reuid=tallybot --regid=tallybot --init-groups -- tallybot --home "/var/lib/tallybot/$name" --send DisGam ||
        fail "--send did not reach instance $name"
done
if [ "$use_systemd" = 0 ]; then
    grep -q '^Profile: ' "$work/alpha.out" || fail "instance alpha did not print its profile"
    grep -q '^> ' "$work/alpha.out" || fail "instance alpha did not print its own posts"
fi

step "stopping the league"
if [ "$use_systemd" = 1 ]; then
    systemctl stop tallybot@alpha.service tallybot@beta.service
else
    for pid in "${bots[@]}"; do
        kill -TERM "$pid"
        status=0
        wait "$pid" || status=$?
        [ "$status" -eq 0 ] || fail "exit status $status after SIGTERM"
    done
    bots=()
fi
for name in alpha beta; do
    wait_for "$work/league.log" ":Tb$name!.* QUIT" 10 || fail "instance $name did not quit IRC"
    grep -q "Application terminated normally" "/var/lib/tallybot/$name/Tallybot.log" || fail "no normal end for $name"
done
echo "both instances posted and stopped normally"

step "removing the package"
apt-get purge -y -qq tallybot >/dev/null
[ ! -e /usr/bin/tallybot ] || fail "/usr/bin/tallybot still there"
[ ! -e /var/lib/tallybot ] || fail "/var/lib/tallybot still there after purge"
echo "check-deb: OK"
