// The Quake 2 and Quake 3 family parsers, through the entry the query cycle calls, on fixtures.

#include "query/parsers.h"
#include "query/quake_family.h"
#include "tests/support/fixture_file.h"
#include "tests/support/query_printers.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

profiles::GameProfile Profile(int advanced, int autoTeams) {
    profiles::GameProfile p;
    p.Advanced = advanced;
    p.AutoTeams = autoTeams;
    return p;
}

GameState Parse(int engine, const char* fixture, const profiles::GameProfile& profile, GameState state = {}) {
    state.EngineId = engine;
    ParseEngineReply(engine, test::ReadFixture(fixture), state, profile);
    return state;
}

PlayerStatus Player(std::int16_t score, std::int32_t ping, std::string name, std::int32_t team = 0) {
    return PlayerStatus{score, ping, std::move(name), team, "", 0};
}

using Pair = std::pair<int, int>;
Pair StatusScores(const GameState& st) {
    return {st.Status.ScoreRed, st.Status.ScoreBlue};
}

TEST(Q3ParserTest, CtfReplyWithTeamLists) {
    GameState st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 1));
    EXPECT_EQ(st.Status, (ServerStatus{"4", 8, 16, 20, 0, "FragFest CTF", "Q3 1.32c linux-i386 May  8 2006", 68,
                                       "q3wctf1", "baseq3", 3, 1, "12:15", "OSP v1.03a", 16}));
    EXPECT_EQ(st.Players[1], Player(20, 40, "Sarge", 1));
    EXPECT_EQ(st.Players[3], Player(18, 50, "DoomGuy", 1));
    EXPECT_EQ(st.Players[5], Player(16, 60, "Orbb", 1));
    EXPECT_EQ(st.Players[10], Player(11, 85, "Bones", 2));
    EXPECT_EQ(st.Players[16], Player(5, 115, "Xaero", 2));
    EXPECT_EQ(st.Players[17], PlayerStatus{});
    EXPECT_EQ(Pair(st.TeamScoreRed, st.TeamScoreBlue), Pair(3, 1));

    // Advanced 0: no trusted time, team scores summed from the players; ScoreRed as the server said.
    st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(0, 1));
    EXPECT_EQ(st.Status.ScoreTime, "N/A");
    EXPECT_EQ(st.Status.ScoreRed, 3);
    EXPECT_EQ(Pair(st.TeamScoreRed, st.TeamScoreBlue), Pair(104, 96));
}

TEST(Q3ParserTest, WithoutAutoTeamsManualTeamsSurviveAndAreSummed) {
    GameState st;
    st.Players[3].Team = 1;
    st.Players[4].Team = 2;
    st.Players[20].Team = 2; // beyond the players of the reply: cleared
    st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 0), st);
    EXPECT_EQ(st.Players[3].Team, 1);
    EXPECT_EQ(st.Players[20].Team, 0);
    EXPECT_EQ(StatusScores(st), Pair(18, 17));
    EXPECT_EQ(st.TeamScoreResets, 0);
    // The other family members pass reset -1: the remembered scores are reset on every reply.
    st = Parse(kEngineRTCW, "rtcw/obj_4players.bin", Profile(1, 0), st);
    EXPECT_EQ(st.Status.ScoreRed, 8); // slot 3 is still red
    EXPECT_EQ(st.TeamScoreResets, 1);
}

TEST(Q3ParserTest, ThreewaveTimeAndKeysTakenFromValues) {
    GameState st = Parse(kEngineQ3, "q3/threewave_ctf.bin", Profile(1, 1));
    EXPECT_EQ(st.Status.GameType, "ctf");
    EXPECT_EQ(st.Status.MapName, "q3wcp9");
    EXPECT_EQ(StatusScores(st), Pair(5, 2));
    EXPECT_EQ(st.Status.ScoreTime, "1:00");
    EXPECT_EQ(st.Players[2], Player(2, 999, "One"));
    EXPECT_EQ(Parse(kEngineET, "q3/threewave_ctf.bin", Profile(1, 1)).Status.ScoreTime, "19:00");

    const struct {
        int timeLimit;
        const char *gameName, *in, *out;
    } cases[] = {
        {20, "threewave", "12:15", "7:45"}, {20, "Threewave", "19:00", "1:00"}, {20, "THREEWAVE ", "10:00", "9:00"},
        {20, "threewave", "19:59", "0:01"}, {30, "threewave", "0:05", "29:55"}, {20, "threewave", "N/A", "N/A"},
        {20, "baseq3", "12:15", "12:15"},   {20, "threewave", "5", "5"},        {20, "threewave", "5:x", "5:x"}};
    for (const auto& c : cases) {
        ServerStatus s;
        s.TimeLimit = static_cast<std::uint8_t>(c.timeLimit);
        s.GameName = c.gameName;
        s.ScoreTime = c.in;
        quake::ApplyThreewaveTime(s);
        EXPECT_EQ(s.ScoreTime, c.out) << c.in;
    }
}

TEST(Q3ParserTest, DuelTakesScoresBeforeThePlayerLines) {
    GameState st = Parse(kEngineQ3, "q3/duel.bin", Profile(1, 1));
    EXPECT_EQ(st.Players[2], Player(9, 31, "Rapha", 1));
    EXPECT_EQ(st.Players[1], Player(11, 25, "Cadavre", 2));
    EXPECT_EQ(StatusScores(st), Pair(0, 0));
}

TEST(Q3ParserTest, DisconnectPacketsLeaveTheStateAlone) {
    GameState before = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 1));
    const std::pair<int, const char*> cases[] = {{kEngineQ3, "q3/disconnect.bin"},
                                                 {kEngineJA, "q3/disconnect.bin"},
                                                 {kEngineMoH, "moh/disconnect.bin"},
                                                 {kEngineQ2, "q2/info.bin"}};
    for (const auto& [engine, file] : cases) {
        GameState st = before;
        ParseEngineReply(engine, test::ReadFixture(file), st, Profile(0, 0));
        EXPECT_EQ(st.Status, before.Status) << file;
        EXPECT_EQ(st.Players, before.Players) << file;
    }
}

TEST(Q3ParserTest, OverfullReplyKeepsFiftyPlayersAndAbandonsBadNumbers) {
    GameState st = Parse(kEngineQ3, "q3/overfull_60players.bin", Profile(1, 1));
    EXPECT_EQ(st.Status.NumPlayers, 50);
    EXPECT_EQ(st.Players[50], Player(49, 49, "p49"));
    EXPECT_EQ(st.Status.MaxClients, 0);   // 300 does not fit a byte
    EXPECT_EQ(st.Status.CaptureLimit, 0); // "ten"
    EXPECT_EQ(st.Status.FragLimit, 0);    // 99999 overflows
    EXPECT_EQ(st.Status.TimeLimit, 15);
}

TEST(Q3ParserTest, EveryFamilyMember) {
    const struct {
        int engine;
        const char *file, *host, *map;
        int players;
        PlayerStatus first, second;
    } cases[] = {
        {kEngineRTCW, "rtcw/obj_4players.bin", "RtCW Beach", "mp_beach", 4, Player(12, 70, "AxisLt"),
         Player(4, 55, "Allied Medic")},
        {kEngineEF, "ef/ctf_2players.bin", "Voyager Holodeck", "ctf_voy1", 2, Player(6, 45, "Munro"),
         Player(1, 60, "Telsia")},
        {kEngineJK2, "jk2/ffa_2players.bin", "Jedi Temple", "ffa_bespin", 2, Player(15, 32, "Kyle"),
         Player(3, 48, "Desann")},
        {kEngineSoF2, "sof2/ctf_2players.bin", "SoF2 Jungle", "mp_jor1", 2, Player(30, 80, "Mullins", 1),
         Player(45, 65, "Taylor", 2)},
        // MoH lines carry no score; ET's axis/allies lists use player numbers as slots (slot 0 too).
        {kEngineMoH, "moh/tdm_3players.bin", "MoH Stalingrad", "obj/obj_team2", 3, Player(0, 80, "Powell"),
         Player(0, 120, "Axis Officer")},
        {kEngineET, "et/sw_3players.bin", "ET Oasis Stopwatch", "oasis", 3, Player(20, 42, "AxisEng", 2),
         Player(11, 67, "Allied Cov", 1)},
        {kEngineJA, "ja/ctf_2players.bin", "JA Ctf Yavin", "mp/ctf_yavin", 2, Player(25, 30, "Jaden"),
         Player(18, 44, "Rosh")},
        {kEngineCoD, "cod/tdm_2players.bin", "CoD Carentan", "mp_carentan", 2, Player(10, 50, "Price"),
         Player(6, 75, "Hans")},
        {kEngineEF2, "ef2/ctf_2players.bin", "EF2 Borg", "ctf_borg", 2, Player(4, 60, "Alex Munro"),
         Player(2, 75, "Jurot")},
    };
    for (const auto& c : cases) {
        GameState st = Parse(c.engine, c.file, Profile(1, 1));
        EXPECT_EQ(st.Status.HostName, c.host) << c.file;
        EXPECT_EQ(st.Status.MapName, c.map) << c.file;
        EXPECT_EQ(st.Status.NumPlayers, c.players) << c.file;
        EXPECT_EQ(st.Players[1], c.first) << c.file;
        EXPECT_EQ(st.Players[2], c.second) << c.file;
    }
}

TEST(Q2ParserTest, DeathmatchCounterShiftsThePlayers) {
    GameState st = Parse(kEngineQ2, "q2/dm_3players.bin", Profile(1, 1));
    EXPECT_EQ(st.Status, (ServerStatus{"3", 0, 12, 15, 50, "Q2 Classic", "3.20 x86 Nov  2 1999 Linux", 34, "q2dm1",
                                       "baseq2", 0, 0, "N/A", "", 4}));
    EXPECT_EQ(st.Players[1], PlayerStatus{});
    EXPECT_EQ(st.Players[2], Player(14, 52, "Tank"));
    EXPECT_EQ(st.Players[4], Player(-2, 120, "Rhino"));

    st = Parse(kEngineQ2, "q2/ctf_2players.bin", Profile(0, 1)); // ctf first: deathmatch is not consumed
    EXPECT_EQ(st.Status.GameType, "4");
    EXPECT_EQ(st.Status.TimeLimit, 0); // 300 does not fit
    EXPECT_EQ(st.Status.NumPlayers, 3);
    EXPECT_EQ(st.Players[3], Player(3, 61, "Defender"));
}

} // namespace
} // namespace tallybot::query
