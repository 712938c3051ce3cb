#!/usr/bin/env python3
"""Writes the reply fixtures of the GameSpy, Half-Life, FarCry, UT2003 and Doom 3 engines.

Each file is one datagram as a server sends it. Run from anywhere; the files land beside this
script in ut/, aa/, hl/, fc/, ut2k3/ and d3/.
"""
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))


def z(text):
    """A 0x00-terminated Latin-1 text."""
    return text.encode("latin-1") + b"\x00"


def lz(text):
    """A UT2003 text: length byte (terminator included), text, 0x00."""
    body = z(text)
    return bytes([len(body)]) + body


def gamespy(pairs):
    return "".join("\\" + k + "\\" + v for k, v in pairs).encode("latin-1")


UT_HEAD = [
    ("gamename", "ut"), ("gamever", "436"), ("minnetver", "432"), ("location", "0"),
    ("hostname", "^1Tally UT Server"), ("hostport", "7777"), ("maptitle", "Facing Worlds"),
    ("mapname", "CTF-Face"), ("gametype", "CTFGame"), ("numplayers", "3"), ("maxplayers", "16"),
    ("gamemode", "openplaying"), ("timelimit", "20"), ("goalteamscore", "5"), ("fraglimit", "30"),
]
UT_PLAYERS = [
    [("player_0", "Alpha"), ("frags_0", "12"), ("ping_0", "50"), ("team_0", "0")],
    [("player_1", "Bravo"), ("frags_1", "7"), ("ping_1", "1200"), ("team_1", "1")],
    [("player_2", "Charlie"), ("frags_2", "3"), ("ping_2", "80"), ("team_2", "0")],
]


def ut_files():
    whole = UT_HEAD + sum(UT_PLAYERS, []) + [("queryid", "37.1"), ("final", "")]
    part1 = UT_HEAD + UT_PLAYERS[0] + [("queryid", "38.1")]
    part2 = UT_PLAYERS[1] + UT_PLAYERS[2] + [("queryid", "38.2"), ("final", "")]
    return {"status.bin": gamespy(whole), "first_datagram.bin": gamespy(part1), "second_datagram.bin": gamespy(part2)}


def aa_files():
    pairs = [
        ("gamename", "armygame"), ("gamever", "230"), ("HostName", '"AA" Tally Server'),
        ("mapname", "Bridge"), ("gametype", "AssaultGame"), ("Numplayers", "4"), ("maxplayers", "24"),
        ("timelimit", "25"), ("goalteamscore", "2"),
        ("player_0", "Sgt Pepper"), ("frags_0", "40"), ("ping_0", "60"), ("team_0", "1"),
        ("player_1", "Pvt Parts"), ("frags_1", "10"), ("ping_1", "70"), ("team_1", "0"),
        ("player_2", "Cpl Punishment"), ("frags_2", "-5"), ("ping_2", "999"), ("team_2", "1"),
        ("player_3", "Maj Tom"), ("frags_3", "22"), ("ping_3", "1200"), ("team_3", "0"),
        ("queryid", "12.1"), ("final", ""),
    ]
    return {"status.bin": gamespy(pairs)}


def hl_files():
    info = b"\xff\xff\xff\xffC" + z("127.0.0.1:27015") + z("Tally HL Server") + z("crossfire") + z("valve")
    info += z("Half-Life") + bytes([3, 16, 46]) + b"dl\x00\x00"
    players = b"\xff\xff\xff\xffD" + bytes([3])
    for index, (name, frags, seconds) in enumerate([("Gordon", 300, 610.5), ("Barney", 5, 42.0), ("Alyx", -1, 7.25)]):
        players += bytes([index + 1]) + z(name) + struct.pack("<i", frags) + struct.pack("<f", seconds)
    rules_pairs = [("mp_timelimit", "30"), ("mp_fraglimit", "0"), ("MP_WinLimit", "10"), ("sv_gravity", "800"),
                   ("mp_timeleft", "754"), ("mp_friendlyfire", "1")]
    rules = b"\xff\xff\xff\xffE" + struct.pack("<h", len(rules_pairs))
    for key, value in rules_pairs:
        rules += z(key) + z(value)
    return {"info.bin": info, "players.bin": players, "rules.bin": rules}


def fc_files():
    status = b"\x7f\xff\xff\xffS\x0e" + struct.pack("<I", 49001)
    status += z("1.4.0.1395") + z("Tally FC Server") + z("1395") + z("FarCry") + z("mp_airstrip") + bytes([3, 32])
    players = b"\x7f\xff\xff\xffP\x0e\x03\x00"
    for name, team, score, ping in [("Jack", "red", 12, 50), ("Val", "blue", 0, 80), ("Doyle", "red", 7, 120)]:
        score_text = bytes([score]) if score else b""
        players += z(name) + z(team) + b"\x01" + score_text + b"\x00" + b"\x00\x00" + bytes([ping]) + b"\x00"
        players += b"\x00" * 6
    rules = b"\x7f\xff\xff\xffR\x0e"
    for key, value in [("gr_ScoreLimit", "30"), ("gr_TimeLimit", "20.5"), ("gr_DropFadeTime", "5"),
                       ("gr_NextMap", "mp_jungle")]:
        rules += z(key) + z(value)
    return {"status.bin": status, "players.bin": players, "rules.bin": rules}


def ut2k3_files():
    head = b"\x80\x00\x00\x00"
    info = head + b"\x00" + struct.pack("<I", 1) + b"\x00" + struct.pack("<II", 7777, 7778)
    info += bytes([len(z("Tally UT2003 Server"))]) + z("Tally UT2003 Server") + lz("DM-Antalus") + lz("xDeathMatch")
    info += struct.pack("<ii", 3, 16) + struct.pack("<i", 0)
    assert info.index(b"Tally") == 19
    rules = head + b"\x01" + b"\x00"
    for key, value in [("AdminName", "Tally"), ("MaxSpectators", "2"), ("timelimit", "20"), ("goalscore", "25")]:
        rules += lz(key) + lz(value)
    players = head + b"\x02"
    for pid, (name, ping, score) in enumerate([("Malcolm", 300, 25), ("Gorge", 60, -2), ("Lauren", 70, 9)]):
        players += struct.pack("<i", pid + 1) + lz(name) + struct.pack("<ii", ping, score)
    return {"info.bin": info, "rules.bin": rules, "players.bin": players}


def d3_files():
    head = b"\xff\xffinfoResponse\x00" + b"\x11\x22\x33\x44" + struct.pack("<I", 0x00010029)
    pairs = [("si_gameType", "DM"), ("si_maxPlayers", "8"), ("si_timeLimit", "15"), ("si_fragLimit", "25"),
             ("si_usePass", "0"), ("si_name", "^1Tally ^7D3"), ("si_pure", ""), ("si_map", "game/mp/d3dm1"),
             ("gamename", "baseDOOM-1"), ("si_version", "DOOM 1.3.1.1304 linux-x86")]
    keys = b"".join(z(k) + z(v) for k, v in pairs)
    info = head + keys + b"\x00\x00"
    for client, ping, name in [(0, b"\x00\x32", "Marine"), (1, b"\x32\x00", "^2Green"), (2, b"\x80\x01", "Doomguy")]:
        info += bytes([client]) + ping + struct.pack("<I", 25000) + z(name)
    info += b"\x20"
    noplayers = head + keys + b"\x00\x20"
    return {"info.bin": info, "noplayers.bin": noplayers}


def main():
    for folder, files in [("ut", ut_files()), ("aa", aa_files()), ("hl", hl_files()), ("fc", fc_files()),
                          ("ut2k3", ut2k3_files()), ("d3", d3_files())]:
        os.makedirs(os.path.join(HERE, folder), exist_ok=True)
        for name, data in files.items():
            with open(os.path.join(HERE, folder, name), "wb") as f:
                f.write(data)


if __name__ == "__main__":
    main()
