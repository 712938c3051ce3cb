#!/usr/bin/env bash
# Time from starting `tallybot --headless` to its first query datagram: a fresh home whose
# Tallybot.ini names a loopback UDP port this script listens on. The first run is cold (profiles
# copied into the new home); later runs reuse the home.
#   bench/startup_measure.sh [--short] BUILD_DIR
# --short starts it twice instead of ten times.
set -euo pipefail
runs=10
if [ "${1:-}" = "--short" ]; then runs=2; shift; fi
build=${1:?usage: startup_measure.sh [--short] BUILD_DIR}
bot="$build/bin/tallybot"
[ -x "$bot" ] || { echo "startup_measure: no $bot" >&2; exit 0; }

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT

# perl (with Time::HiRes) comes with build-essential; it listens, starts the program and times.
perl -MIO::Socket::INET -MIO::Select -MTime::HiRes=time -MPOSIX=:sys_wait_h -e '
    my ($bot, $home, $runs) = @ARGV;
    my @ms;
    for my $run (1 .. $runs) {
        my $sock = IO::Socket::INET->new(Proto => "udp", LocalAddr => "127.0.0.1", LocalPort => 0)
            or die "startup_measure: no UDP socket: $!\n";
        my $port = $sock->sockport;
        open(my $ini, ">", "$home/Tallybot.ini") or die;
        print $ini "[Game]\r\n1Host=127.0.0.1:$port\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n";
        close($ini);
        my $start = time;
        my $pid = fork();
        if ($pid == 0) {
            open(STDOUT, ">", "/dev/null"); open(STDERR, ">", "/dev/null");
            exec($bot, "--home", $home, "--headless") or POSIX::_exit(127);
        }
        my $ready = IO::Select->new($sock)->can_read(10);
        my $end = time;
        kill("TERM", $pid);
        waitpid($pid, 0);
        die "startup_measure: no query datagram within 10 s\n" unless $ready;
        push @ms, ($end - $start) * 1000;
        close($sock);
    }
    my @sorted = sort { $a <=> $b } @ms;
    printf "%-58s %16s %11.1f ms\n", "start to first query datagram, first (cold home)", "", $ms[0];
    printf "%-58s %16s %11.1f ms\n", "start to first query datagram, median of $runs", "", $sorted[int(($runs - 1) / 2)];
    printf "%-58s %16s %11.1f ms\n", "start to first query datagram, slowest of $runs", "", $sorted[-1];
' "$bot" "$home" "$runs"
