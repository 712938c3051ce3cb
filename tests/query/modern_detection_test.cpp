// Detection with the [Extras] switches: Quake 3 engine forks by their version strings, A2S replies,
// and the classic result for every one of them with the switches off.

#include "query/darkplaces_reply.h"
#include "query/parsers.h"
#include "query/query_extras.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;
using testsupport::ReadReplyFixture;

struct ForkCase {
    std::string fixture;
    int withSwitch;
    int withoutSwitch;
};

class ModernDetectionTest : public ::testing::TestWithParam<ForkCase> {};

TEST_P(ModernDetectionTest, ForkIsQ3OnlyWithTheSwitch) {
    const ForkCase& c = GetParam();
    const std::string reply = ReadReplyFixture(c.fixture);
    GameState on, off;
    DetectEngineWithExtras(reply, on, QueryExtras{true, false, false, false});
    DetectEngineWithExtras(reply, off, QueryExtras{});
    EXPECT_EQ(on.EngineId, c.withSwitch);
    EXPECT_EQ(off.EngineId, c.withoutSwitch);
    EXPECT_EQ(on.QueryPortOffset, 0);
}

INSTANTIATE_TEST_SUITE_P(Forks, ModernDetectionTest,
                         ::testing::Values(ForkCase{"ioq3/openarena.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/ioq3_git.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/ioq3_oa.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/urt43.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/ioq3_urt.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/ioq3_r.bin", kEngineQ3, kEngineQ2},
                                           ForkCase{"ioq3/cnq3.bin", kEngineQ3, kEngineQ2},
                                           // "Q3e" already begins with "Q3"
                                           ForkCase{"ioq3/quake3e.bin", kEngineQ3, kEngineQ3},
                                           ForkCase{"ioq3/other_engine.bin", kEngineQ2, kEngineQ2},
                                           ForkCase{"q3/ctf_16players.bin", kEngineQ3, kEngineQ3},
                                           // DarkPlaces: no "\version", the classic CoD fallback
                                           ForkCase{"dp/xonotic_ctf.bin", kEngineQ3, kEngineCoD}));

TEST(ModernDetectionTest, OnlyTheVersionValueCounts) {
    // A fork name elsewhere in the reply, or a version that merely contains it, stays Quake 2.
    GameState a, b;
    const QueryExtras modern{true, false, false, false};
    DetectEngineWithExtras("\xFF\xFF\xFF\xFFprint\n\\version\\3.20 x86\\sv_hostname\\ioq3 fans\n"s, a, modern);
    DetectEngineWithExtras("\xFF\xFF\xFF\xFFprint\n\\version\\my ioq3 build\n"s, b, modern);
    EXPECT_EQ(a.EngineId, kEngineQ2);
    EXPECT_EQ(b.EngineId, kEngineQ2);
}

TEST(ModernDetectionTest, ForkRepliesParseLikeQuake3) {
    GameState state;
    state.EngineId = kEngineQ3;
    profiles::GameProfile profile;
    ParseQ3Reply(ReadReplyFixture("ioq3/urt43.bin"), state, profile);
    EXPECT_EQ(state.Status.HostName, "Modern Server");
    EXPECT_EQ(state.Status.MapName, "ut4_turnpike");
    EXPECT_EQ(state.Status.GameName, "q3urt43");
    EXPECT_EQ(state.Status.Version, "ioq3 1.35 urt 4.3.4 linux-x86_64 Jun 14 2018");
    EXPECT_EQ(state.Status.ScoreTime, "N/A");
    testsupport::ExpectPlayers(state.Players, {{"Sarge", 12, 48, 0}, {"Grism", 7, 0, 0}});
}

// Xonotic through its Quake 3 form: host name, game type from qcstatus, teams from the lines.
TEST(ModernDetectionTest, DarkPlacesRepliesParseLikeQuake3) {
    GameState state;
    state.EngineId = kEngineQ3;
    profiles::GameProfile teams;
    teams.AutoTeams = 1;
    ParseQ3Reply(DarkPlacesAsQuake3(ReadReplyFixture("dp/xonotic_ctf.bin")), state, teams);
    EXPECT_EQ(state.Status.HostName, "Xonotic CTF");
    EXPECT_EQ(state.Status.GameName, "Xonotic");
    EXPECT_EQ(state.Status.GameType, "ctf");
    EXPECT_EQ(state.Status.MapName, "xoylent");
    EXPECT_EQ(state.Status.MaxClients, 16);
    testsupport::ExpectPlayers(state.Players, {{"Sarge", 12, 48, 1}, {"Grism", 7, 0, 2}, {"Watcher", -666, 30, 0}});
    EXPECT_FALSE(IsDarkPlacesReply(ReadReplyFixture("ioq3/openarena.bin")));
}

TEST(ModernDetectionTest, ClassicResultsNameTheEngineThatNeedsTheSwitch) {
    EXPECT_EQ(PresentDayEngineNeedingSwitch(ReadReplyFixture("dp/xonotic_ctf.bin"), kEngineCoD),
              "Xonotic, a DarkPlaces engine");
    EXPECT_EQ(PresentDayEngineNeedingSwitch(ReadReplyFixture("ioq3/cnq3.bin"), kEngineQ2),
              "CNQ3 1.53 linux-x64 Mar 3 2023, an ioquake3-family engine");
    EXPECT_EQ(PresentDayEngineNeedingSwitch(ReadReplyFixture("ioq3/other_engine.bin"), kEngineQ2), "");
    EXPECT_EQ(PresentDayEngineNeedingSwitch(ReadReplyFixture("q3/ctf_16players.bin"), kEngineQ3), "");
}

struct A2SCase {
    std::string fixture;
    int withSwitch;
    int withoutSwitch;
    int portOffsetWithout;
};

class A2SDetectionTest : public ::testing::TestWithParam<A2SCase> {};

TEST_P(A2SDetectionTest, A2SRepliesAreEngine18OnlyWithTheSwitch) {
    const A2SCase& c = GetParam();
    const std::string reply = ReadReplyFixture(c.fixture);
    GameState on, off;
    DetectEngineWithExtras(reply, on, QueryExtras{false, true, false, false});
    DetectEngineWithExtras(reply, off, QueryExtras{});
    EXPECT_EQ(on.EngineId, c.withSwitch);
    EXPECT_EQ(off.EngineId, c.withoutSwitch);
    EXPECT_EQ(off.QueryPortOffset, c.portOffsetWithout);
}

INSTANTIATE_TEST_SUITE_P(Replies, A2SDetectionTest,
                         ::testing::Values(
                             // the challenge holds an "@" and is short: classic detection sends it
                             // to the GameSpy query port
                             A2SCase{"a2s/challenge.bin", kEngineA2S, kEnginePending, 1},
                             A2SCase{"a2s/info.bin", kEngineA2S, kEngineCoD, 0},
                             A2SCase{"a2s/rules_split0.bin", kEngineA2S, kEngineCoD, 0},
                             // the classic Half-Life info reply stays HL with the switch on
                             A2SCase{"hl/info.bin", kEngineHL, kEngineHL, 0}));

TEST(EngineCodeWithExtrasTest, A2SCodeOnlyWithTheSwitch) {
    EXPECT_EQ(EngineCodeWithExtras(kEngineA2S, QueryExtras{false, true, false, false}), "A2S");
    EXPECT_EQ(EngineCodeWithExtras(kEngineA2S, QueryExtras{true, false, true, false}), "");
    for (int id = 0; id <= kEngineCount; ++id)
        EXPECT_EQ(EngineCodeWithExtras(id, QueryExtras{true, true, true, false}), EngineCode(id)) << id;
}

} // namespace
} // namespace tallybot::query
