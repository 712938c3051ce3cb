// FarCry status, players and rules replies.

#include "query/parsers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::ReadReplyFixture;

const profiles::GameProfile kNoProfile{};

TEST(FarCryParserTest, StatusReplyFillsServerFields) {
    GameState state;
    state.Status.FragLimit = 30;
    ParseFCReply(ReadReplyFixture("fc/status.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.GameVersion, "1.4.0.1395");
    EXPECT_EQ(state.Status.HostName, "Tally FC Server");
    EXPECT_EQ(state.Status.Version, "1395");
    EXPECT_EQ(state.Status.GameName, "FarCry");
    EXPECT_EQ(state.Status.MapName, "mp_airstrip");
    EXPECT_EQ(state.Status.NumPlayers, 3);
    EXPECT_EQ(state.Status.MaxClients, 32);
    EXPECT_EQ(state.Status.FragLimit, 30);
}

TEST(FarCryParserTest, PlayersReplyReadsOneByteScoresAndPings) {
    GameState state;
    state.Status.NumPlayers = 3;
    state.Players[2].Score = 9; // an empty score text leaves the old score
    state.Players[4].Name = "gone";
    ParseFCReply(ReadReplyFixture("fc/players.bin"), state, kNoProfile);
    ExpectPlayers(state.Players, {{"Jack", 12, 50, 0}, {"Val", 9, 80, 0}, {"Doyle", 7, 120, 0}});
    EXPECT_EQ(state.Players[4], PlayerStatus{});
    EXPECT_EQ(state.Status.NumPlayers, 3);
}

TEST(FarCryParserTest, RulesReplyRoundsTheTimeLimitHalfToEven) {
    GameState state;
    ParseFCReply(ReadReplyFixture("fc/rules.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.FragLimit, 30);
    EXPECT_EQ(state.Status.TimeLimit, 20); // "20.5"
}

} // namespace
} // namespace tallybot::query
