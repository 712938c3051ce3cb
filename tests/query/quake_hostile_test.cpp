// Truncated, garbage, oversized and hostile replies: every Quake-family entry and the detection
// must survive them and leave a table that readers can walk (NumPlayers within 0..50).

#include "query/parsers.h"
#include "tests/support/fixture_file.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

const int kQuakeEngines[] = {kEngineQ2,  kEngineQ3, kEngineRTCW, kEngineEF,  kEngineJK2, kEngineSoF2,
                             kEngineMoH, kEngineET, kEngineJA,   kEngineCoD, kEngineEF2};
const char* kFixtures[] = {
    "q3/ctf_16players.bin", "q3/duel.bin",          "q2/dm_3players.bin",   "q2/ctf_2players.bin",
    "et/sw_3players.bin",   "moh/tdm_3players.bin", "q3/threewave_ctf.bin", "q3/overfull_60players.bin"};

void ParseEverywhere(const std::string& reply) {
    for (int advanced = 0; advanced <= 1; ++advanced) {
        for (int autoTeams = 0; autoTeams <= 1; ++autoTeams) {
            profiles::GameProfile profile;
            profile.Advanced = advanced;
            profile.AutoTeams = autoTeams;
            for (int engine : kQuakeEngines) {
                GameState st;
                st.EngineId = engine;
                ParseEngineReply(engine, reply, st, profile);
                ASSERT_GE(st.Status.NumPlayers, 0);
                ASSERT_LE(st.Status.NumPlayers, kMaxPlayers);
            }
        }
    }
    GameState st;
    DetectEngine(reply, st);
    st.EngineId = kEnginePending;
    DetectEngine(reply, st);
}

TEST(QuakeHostileTest, EveryTruncationOfEveryFixture) {
    for (const char* file : kFixtures) {
        std::string full = test::ReadFixture(file);
        for (std::size_t len = 0; len <= full.size(); len += 7)
            ParseEverywhere(full.substr(0, len));
    }
}

TEST(QuakeHostileTest, GarbageBytes) {
    std::uint32_t seed = 12345;
    for (int round = 0; round < 200; ++round) {
        std::string reply;
        for (int i = 0; i < 300; ++i) {
            seed = seed * 1103515245u + 12345u;
            const char alphabet[] = "\\\n ^\"0123456789-xX\xFF\x00";
            reply.push_back(alphabet[(seed >> 16) % (sizeof alphabet - 1)]);
        }
        ParseEverywhere(reply);
    }
}

TEST(QuakeHostileTest, SixtyFourKilobyteReplies) {
    const std::string header = "\xFF\xFF\xFF\xFFstatusResponse\n";
    std::string longName(65536, 'A');
    std::string lines;
    while (lines.size() < 65536)
        lines += "32767 2147483647 \"^Xffffff^1n\"\n";
    std::string manyKeys;
    while (manyKeys.size() < 65536)
        manyKeys += "\\players_red\\0 1 2 3 50\\players_active\\50 50";
    std::string hugeNumbers = "\\capturelimit\\" + std::string(60000, '9') + "\\timelimit\\1e999\\fraglimit\\&HFFFF";
    const std::string replies[] = {
        header + "\\sv_hostname\\" + longName + "\n" + "1 1 " + longName + "\n",
        header + "\\g_gametype\\4\n" + lines,
        header + manyKeys + "\n0 0 x\n",
        header + "\\g_gametype\\1" + manyKeys + "\n",
        header + hugeNumbers + "\n",
        std::string(65536, '\n'),
        std::string(65536, '\\'),
        std::string(65536, '\xFF'),
        "\xFF\xFF\xFF\xFFprint\n\\deathmatch\\1\\ctf\\255\n" + lines,
    };
    for (const std::string& reply : replies)
        ParseEverywhere(reply);
}

TEST(QuakeHostileTest, BadTeamNumbersEndTheAssignment) {
    profiles::GameProfile profile;
    profile.Advanced = 1;
    profile.AutoTeams = 1;
    const std::string header = "\xFF\xFF\xFF\xFFstatusResponse\n";
    const std::string players = "1 10 a\n2 20 b\n3 30 c\n";
    GameState st;
    ParseEngineReply(kEngineET, header + "\\players_axis\\1 51 2\\players_allies\\3\n" + players, st, profile);
    EXPECT_EQ(st.Players[1].Team, 1);
    EXPECT_EQ(st.Players[2].Team, 0);
    EXPECT_EQ(st.Players[3].Team, 0);
    EXPECT_EQ(st.Status.NumPlayers, 3);
    EXPECT_EQ(st.Players[3].Name, "c");
    ParseEngineReply(kEngineQ3, header + "\\g_gametype\\1\\players_active\\2 60\n" + players, st, profile);
    EXPECT_EQ(st.Players[2].Team, 1);
    EXPECT_EQ(st.Players[1].Team, 0);
    EXPECT_EQ(st.Status.NumPlayers, 3);
}

} // namespace
} // namespace tallybot::query
