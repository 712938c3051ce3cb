// The Quake 2 and Quake 3 family parsers, through the entry the query cycle calls, on fixtures.

#include "query/parsers.h"
#include "query/quake_family.h"
#include "tests/support/fixture_file.h"

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

TEST(Q3ParserTest, CtfReplyWithTeamLists) {
    GameState st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 1));
    const ServerStatus& s = st.Status;
    EXPECT_EQ(s.GameType, "4");
    EXPECT_EQ(s.CaptureLimit, 8);
    EXPECT_EQ(s.MaxClients, 16);
    EXPECT_EQ(s.TimeLimit, 20);
    EXPECT_EQ(s.FragLimit, 0);
    EXPECT_EQ(s.HostName, "FragFest CTF");
    EXPECT_EQ(s.Version, "Q3 1.32c linux-i386 May  8 2006");
    EXPECT_EQ(s.Protocol, 68);
    EXPECT_EQ(s.MapName, "q3wctf1");
    EXPECT_EQ(s.GameName, "baseq3");
    EXPECT_EQ(s.ScoreRed, 3);
    EXPECT_EQ(s.ScoreBlue, 1);
    EXPECT_EQ(s.ScoreTime, "12:15");
    EXPECT_EQ(s.GameVersion, "OSP v1.03a");
    EXPECT_EQ(s.NumPlayers, 16);
    EXPECT_EQ(st.Players[1], Player(20, 40, "Sarge", 1));
    EXPECT_EQ(st.Players[3], Player(18, 50, "DoomGuy", 1));
    EXPECT_EQ(st.Players[5], Player(16, 60, "Orbb", 1));
    EXPECT_EQ(st.Players[10], Player(11, 85, "Bones", 2));
    EXPECT_EQ(st.Players[16], Player(5, 115, "Xaero", 2));
    EXPECT_EQ(st.Players[17], PlayerStatus{});
    EXPECT_EQ(st.TeamScoreRed, 3);
    EXPECT_EQ(st.TeamScoreBlue, 1);
}

TEST(Q3ParserTest, AdvancedZeroHidesTimeAndSumsTheTeams) {
    GameState st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(0, 1));
    EXPECT_EQ(st.Status.ScoreTime, "N/A");
    EXPECT_EQ(st.Status.ScoreRed, 3); // AutoTeams 1: CalcTeamScores is not run
    EXPECT_EQ(st.TeamScoreRed, 104);
    EXPECT_EQ(st.TeamScoreBlue, 96);
}

TEST(Q3ParserTest, WithoutAutoTeamsManualTeamsSurviveAndAreSummed) {
    GameState st;
    st.Players[3].Team = 1;
    st.Players[4].Team = 2;
    st.Players[20].Team = 2; // beyond the players of the reply: cleared
    st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 0), st);
    EXPECT_EQ(st.Players[3].Team, 1);
    EXPECT_EQ(st.Players[1].Team, 0);
    EXPECT_EQ(st.Players[20].Team, 0);
    EXPECT_EQ(st.Status.ScoreRed, 18);
    EXPECT_EQ(st.Status.ScoreBlue, 17);
    EXPECT_EQ(st.TeamScoreRed, 18);
    EXPECT_EQ(st.TeamScoreResets, 0);
}

TEST(Q3ParserTest, OtherFamilyMembersResetTheRememberedScores) {
    GameState st;
    st.Players[1].Team = 1;
    st = Parse(kEngineRTCW, "rtcw/obj_4players.bin", Profile(1, 0), st);
    EXPECT_EQ(st.Status.ScoreRed, 12);
    EXPECT_EQ(st.TeamScoreResets, 1);
    st = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 0), st);
    EXPECT_EQ(st.TeamScoreResets, 1);
}

TEST(Q3ParserTest, ThreewaveTimeAndKeysTakenFromValues) {
    GameState st = Parse(kEngineQ3, "q3/threewave_ctf.bin", Profile(1, 1));
    EXPECT_EQ(st.Status.GameType, "ctf");
    EXPECT_EQ(st.Status.MapName, "q3wcp9");
    EXPECT_EQ(st.Status.ScoreRed, 5);
    EXPECT_EQ(st.Status.ScoreBlue, 2);
    EXPECT_EQ(st.Status.ScoreTime, "1:00");
    EXPECT_EQ(st.Status.NumPlayers, 2);
    EXPECT_EQ(st.Players[2], Player(2, 999, "One"));
    // Same reply on an ET server: no time conversion there.
    EXPECT_EQ(Parse(kEngineET, "q3/threewave_ctf.bin", Profile(1, 1)).Status.ScoreTime, "19:00");
}

struct TimeCase {
    int timeLimit;
    const char* gameName;
    const char* in;
    const char* out;
};

TEST(ThreewaveTimeTest, ElapsedBecomesTimeLeft) {
    const TimeCase cases[] = {
        {20, "threewave", "12:15", "7:45"}, {20, "Threewave", "19:00", "1:00"}, {20, "THREEWAVE ", "10:00", "9:00"},
        {20, "threewave", "19:59", "0:01"}, {30, "threewave", "0:05", "29:55"}, {20, "threewave", "N/A", "N/A"},
        {20, "baseq3", "12:15", "12:15"},   {20, "threewave", "5", "5"},        {20, "threewave", "5:x", "5:x"}};
    for (const TimeCase& c : cases) {
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
    EXPECT_EQ(st.Status.ScoreRed, 0);
    EXPECT_EQ(st.Status.ScoreBlue, 0);
}

TEST(Q3ParserTest, DisconnectPacketsLeaveTheStateAlone) {
    GameState before = Parse(kEngineQ3, "q3/ctf_16players.bin", Profile(1, 1));
    struct {
        int engine;
        const char* file;
    } cases[] = {{kEngineQ3, "q3/disconnect.bin"},
                 {kEngineJA, "q3/disconnect.bin"},
                 {kEngineMoH, "moh/disconnect.bin"},
                 {kEngineQ2, "q2/info.bin"}};
    for (const auto& c : cases) {
        GameState st = before;
        ParseEngineReply(c.engine, test::ReadFixture(c.file), st, Profile(0, 0));
        EXPECT_EQ(st.Status, before.Status) << c.file;
        EXPECT_EQ(st.Players, before.Players) << c.file;
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

TEST(Q3ParserTest, EtTeamListsUsePlayerNumbersAsSlots) {
    GameState st = Parse(kEngineET, "et/sw_3players.bin", Profile(1, 1));
    EXPECT_EQ(st.Players[0].Team, 1);
    EXPECT_EQ(st.Players[1], Player(20, 42, "AxisEng", 2));
    EXPECT_EQ(st.Players[2].Team, 1);
    EXPECT_EQ(st.Players[3], Player(7, 90, "Axis Med", 0));
}

TEST(Q3ParserTest, MohLinesCarryNoScore) {
    GameState st = Parse(kEngineMoH, "moh/tdm_3players.bin", Profile(1, 1));
    EXPECT_EQ(st.Status.HostName, "MoH Stalingrad");
    EXPECT_EQ(st.Status.NumPlayers, 3);
    EXPECT_EQ(st.Players[1], Player(0, 80, "Powell"));
    EXPECT_EQ(st.Players[2], Player(0, 120, "Axis Officer"));
    GameState direct;
    direct.EngineId = kEngineMoH;
    ParseQ3Family(test::ReadFixture("moh/tdm_3players.bin"), direct, Profile(1, 1));
    EXPECT_EQ(direct.Players, st.Players);
}

struct FamilyCase {
    int engine;
    const char* file;
    const char* host;
    const char* map;
    int players;
    PlayerStatus first;
};

TEST(Q3ParserTest, EveryFamilyMember) {
    const FamilyCase cases[] = {
        {kEngineRTCW, "rtcw/obj_4players.bin", "RtCW Beach", "mp_beach", 4, Player(12, 70, "AxisLt")},
        {kEngineEF, "ef/ctf_2players.bin", "Voyager Holodeck", "ctf_voy1", 2, Player(6, 45, "Munro")},
        {kEngineJK2, "jk2/ffa_2players.bin", "Jedi Temple", "ffa_bespin", 2, Player(15, 32, "Kyle")},
        {kEngineSoF2, "sof2/ctf_2players.bin", "SoF2 Jungle", "mp_jor1", 2, Player(30, 80, "Mullins", 1)},
        {kEngineJA, "ja/ctf_2players.bin", "JA Ctf Yavin", "mp/ctf_yavin", 2, Player(25, 30, "Jaden")},
        {kEngineCoD, "cod/tdm_2players.bin", "CoD Carentan", "mp_carentan", 2, Player(10, 50, "Price")},
        {kEngineEF2, "ef2/ctf_2players.bin", "EF2 Borg", "ctf_borg", 2, Player(4, 60, "Alex Munro")},
    };
    for (const FamilyCase& c : cases) {
        GameState st = Parse(c.engine, c.file, Profile(1, 1));
        EXPECT_EQ(st.Status.HostName, c.host) << c.file;
        EXPECT_EQ(st.Status.MapName, c.map) << c.file;
        EXPECT_EQ(st.Status.NumPlayers, c.players) << c.file;
        EXPECT_EQ(st.Players[1], c.first) << c.file;
    }
}

TEST(Q2ParserTest, DeathmatchCounterShiftsThePlayers) {
    GameState st = Parse(kEngineQ2, "q2/dm_3players.bin", Profile(1, 1));
    const ServerStatus& s = st.Status;
    EXPECT_EQ(s.GameType, "3");
    EXPECT_EQ(s.HostName, "Q2 Classic");
    EXPECT_EQ(s.MaxClients, 12);
    EXPECT_EQ(s.TimeLimit, 15);
    EXPECT_EQ(s.FragLimit, 50);
    EXPECT_EQ(s.Protocol, 34);
    EXPECT_EQ(s.Version, "3.20 x86 Nov  2 1999 Linux");
    EXPECT_EQ(s.GameName, "baseq2");
    EXPECT_EQ(s.ScoreTime, "N/A");
    EXPECT_EQ(s.NumPlayers, 4);
    EXPECT_EQ(st.Players[1], PlayerStatus{});
    EXPECT_EQ(st.Players[2], Player(14, 52, "Tank"));
    EXPECT_EQ(st.Players[4], Player(-2, 120, "Rhino"));
}

TEST(Q2ParserTest, CtfWinsOverDeathmatch) {
    GameState st = Parse(kEngineQ2, "q2/ctf_2players.bin", Profile(0, 1));
    EXPECT_EQ(st.Status.GameType, "4");
    EXPECT_EQ(st.Status.TimeLimit, 0); // 300 does not fit
    EXPECT_EQ(st.Status.NumPlayers, 3);
    EXPECT_EQ(st.Players[3], Player(3, 61, "Defender"));
}

} // namespace
} // namespace tallybot::query
