// UT2003 server, rules and players replies.

#include "query/parsers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::ReadReplyFixture;

const profiles::GameProfile kNoProfile{};

TEST(UT2003ParserTest, ServerReplyFillsNamesAndFixedVersion) {
    GameState state;
    state.Status.TimeLimit = 20;
    ParseUT2003Reply(ReadReplyFixture("ut2k3/info.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.HostName, "Tally UT2003 Server");
    EXPECT_EQ(state.Status.MapName, "DM-Antalus");
    EXPECT_EQ(state.Status.GameName, "xDeathMatch");
    EXPECT_EQ(state.Status.MaxClients, 16);
    EXPECT_EQ(state.Status.Version, "UT 2003");
    EXPECT_EQ(state.Status.TimeLimit, 20);
}

TEST(UT2003ParserTest, RulesReplyReadsTimeLimitOnly) {
    GameState state;
    state.Status.HostName = "kept";
    ParseUT2003Reply(ReadReplyFixture("ut2k3/rules.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.TimeLimit, 20);
    EXPECT_EQ(state.Status.ScoreTime, "N/A");
    EXPECT_EQ(state.Status.HostName, "kept");
}

TEST(UT2003ParserTest, PlayersReplyKeepsLowBytesAndLeavesLaterSlots) {
    GameState state;
    state.Players[4] = PlayerStatus{3, 40, "Stale", 1, "", 0};
    ParseUT2003Reply(ReadReplyFixture("ut2k3/players.bin"), state, kNoProfile);
    // Ping 300 read as 44, score -2 as 254.
    ExpectPlayers(state.Players, {{"Malcolm", 25, 44, 0}, {"Gorge", 254, 60, 0}, {"Lauren", 9, 70, 0}});
    EXPECT_EQ(state.Status.NumPlayers, 3);
    EXPECT_EQ(state.Players[4].Name, "Stale");
}

} // namespace
} // namespace tallybot::query
