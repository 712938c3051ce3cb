#!/usr/bin/env python3
"""Writes the reply fixtures of present-day servers: Quake 3 engine forks (ioq3/), DarkPlaces (dp/)
and A2S (a2s/).

Run from tests/data: python3 make_modern_replies.py
"""
import struct

OOB = b"\xff\xff\xff\xff"


def q3_status(version, gamename, mapname, players):
    kv = (b"\\sv_hostname\\^1Modern ^7Server\\version\\" + version + b"\\g_gametype\\4\\gamename\\" + gamename +
          b"\\mapname\\" + mapname + b"\\sv_maxclients\\16\\timelimit\\20\\fraglimit\\0\\capturelimit\\8\\protocol\\71")
    lines = b"".join(b"%d %d \"%s\"\n" % (s, p, n) for s, p, n in players)
    return OOB + b"statusResponse\n" + kv + b"\n" + lines


PLAYERS = [(12, 48, b"^1Sarge"), (7, 0, b"Grism")]

FORKS = {
    # Debian's openarena-server as it answers (ioquake3 engine built by Debian)
    "openarena.bin": (b"ioq3 1.36+u20221123.70d07d9+dfsg-1/Debian linux-x86_64 Jan  8 2023", b"baseoa", b"oa_dm1"),
    "ioq3_git.bin": (b"ioq3 1.36_GIT_e5da13f1-2024-02-05 linux-x86_64 Feb  5 2024", b"baseq3", b"q3dm17"),
    "ioq3_oa.bin": (b"ioq3+oa 1.36_SVN1910M linux-i386 Dec 25 2011", b"baseoa", b"oasago2"),
    "urt43.bin": (b"ioq3 1.35 urt 4.3.4 linux-x86_64 Jun 14 2018", b"q3urt43", b"ut4_turnpike"),
    "ioq3_urt.bin": (b"ioq3-urt 4.2.023 linux-i386 Nov 23 2014", b"q3urt42", b"ut4_casa"),
    "ioq3_r.bin": (b"ioq3_r2231 linux-i386 Apr 10 2012", b"baseq3", b"q3dm6"),
    "quake3e.bin": (b"Q3e 1.32e linux-x86_64 Jan 10 2024", b"baseq3", b"q3tourney2"),
    "cnq3.bin": (b"CNQ3 1.53 linux-x64 Mar 3 2023", b"cpma", b"cpm22"),
    # not a Quake 3 fork: stays Quake 2 with the switch on
    "other_engine.bin": (b"tremulous 1.1.0 linux-i386 Jul 11 2006", b"base", b"atcs"),
}


def dp_status():
    """A Xonotic CTF server as DarkPlaces answers getstatus: no version key, the game type in
    qcstatus, three-digit colours, team numbers in the player lines (-666: a spectator)."""
    kv = (b"\\gamename\\Xonotic\\modname\\data\\gameversion\\806\\sv_maxclients\\16\\clients\\3"
          b"\\bots\\0\\mapname\\xoylent\\hostname\\^x4F0Xonotic ^7CTF\\protocol\\3"
          b"\\qcstatus\\ctf:0.8.6:P0:S13:F5:MXonotic::score!!,caps!!:3:1:\\d0_blind_id\\0 AbCd")
    lines = b"12 48 1 \"^x0F0Sarge\"\n7 0 2 \"Grism\"\n-666 30 0 \"^3Watcher\"\n"
    return OOB + b"statusResponse\n" + kv + b"\n" + lines


def z(text):
    return text + b"\x00"


def a2s_info():
    return (OOB + b"I" + bytes([17]) + z(b"^3Source ^7Test") + z(b"ctf_2fort") + z(b"tf") + z(b"Team Fortress") +
            struct.pack("<H", 440) + bytes([3, 24, 0, ord("d"), ord("l"), 0, 1]) + z(b"8622567") +
            bytes([0x80 | 0x20]) + struct.pack("<H", 27015) + z(b"cp,payload"))


def a2s_players():
    rows = [(b"Scout", 12, 301.5), (b"Medic \"Doc\"", -1, 10.0), (b"", 0, 2.0)]
    body = bytes([len(rows)])
    for i, (name, score, seconds) in enumerate(rows):
        body += bytes([i]) + z(name) + struct.pack("<i", score) + struct.pack("<f", seconds)
    return OOB + b"D" + body


def a2s_rules():
    rules = [(b"mp_timelimit", b"30"), (b"tf_flag_caps_per_round", b"3"), (b"mp_winlimit", b"5"),
             (b"sv_gravity", b"800"), (b"mp_fraglimit", b"0")]
    return OOB + b"E" + struct.pack("<H", len(rules)) + b"".join(z(k) + z(v) for k, v in rules)


def split(reply, request_id, size):
    parts = [reply[i:i + size] for i in range(0, len(reply), size)]
    return [b"\xff\xff\xff\xfe" + struct.pack("<I", request_id) + bytes([len(parts), n]) + struct.pack("<H", size) + p
            for n, p in enumerate(parts)]


def main():
    for name, (version, game, mapname) in FORKS.items():
        open("ioq3/" + name, "wb").write(q3_status(version, game, mapname, PLAYERS))
    open("dp/xonotic_ctf.bin", "wb").write(dp_status())
    open("a2s/info.bin", "wb").write(a2s_info())
    open("a2s/players.bin", "wb").write(a2s_players())
    open("a2s/rules.bin", "wb").write(a2s_rules())
    open("a2s/challenge.bin", "wb").write(OOB + b"A" + bytes([0x4B, 0xA1, 0x40, 0x07]))
    for n, part in enumerate(split(a2s_rules(), 0x00001234, 40)):
        open("a2s/rules_split%d.bin" % n, "wb").write(part)


if __name__ == "__main__":
    main()
