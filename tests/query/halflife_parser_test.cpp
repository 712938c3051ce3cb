// Half-Life info, players and rules replies, each filling only its own fields.

#include "query/parsers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::ReadReplyFixture;

const profiles::GameProfile kNoProfile{};

TEST(HalfLifeParserTest, InfoReplyFillsServerFieldsOnly) {
    GameState state;
    state.Status.TimeLimit = 30;
    state.Players[1].Name = "kept";
    ParseHLReply(ReadReplyFixture("hl/info.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.HostName, "Tally HL Server");
    EXPECT_EQ(state.Status.MapName, "crossfire");
    EXPECT_EQ(state.Status.GameName, "valve");
    EXPECT_EQ(state.Status.Version, "Half-Life");
    EXPECT_EQ(state.Status.MaxClients, 16);
    EXPECT_EQ(state.Status.TimeLimit, 30);
    EXPECT_EQ(state.Status.NumPlayers, 0);
    EXPECT_EQ(state.Players[1].Name, "kept");
}

TEST(HalfLifeParserTest, PlayersReplyKeepsTheLowByteOfTheFrags) {
    GameState state;
    state.Status.HostName = "kept";
    state.Players[4].Name = "gone";
    ParseHLReply(ReadReplyFixture("hl/players.bin"), state, kNoProfile);
    // 300 frags read as 44, -1 as 255.
    ExpectPlayers(state.Players, {{"Gordon", 44, 0, 0}, {"Barney", 5, 0, 0}, {"Alyx", 255, 0, 0}});
    EXPECT_EQ(state.Status.NumPlayers, 3);
    EXPECT_EQ(state.Players[4], PlayerStatus{});
    EXPECT_EQ(state.Status.HostName, "kept");
}

TEST(HalfLifeParserTest, RulesReplyReadsLimitsAndTimeLeft) {
    GameState state;
    state.Status.HostName = "kept";
    ParseHLReply(ReadReplyFixture("hl/rules.bin"), state, kNoProfile);
    EXPECT_EQ(state.Status.TimeLimit, 30);
    EXPECT_EQ(state.Status.FragLimit, 10);
    EXPECT_EQ(state.Status.ScoreTime, "754");
    EXPECT_EQ(state.Status.HostName, "kept");
}

TEST(HalfLifeParserTest, ThreeSubRepliesCombine) {
    GameState state;
    for (const char* name : {"hl/info.bin", "hl/players.bin", "hl/rules.bin"})
        ParseHLReply(ReadReplyFixture(name), state, kNoProfile);
    EXPECT_EQ(state.Status.HostName, "Tally HL Server");
    EXPECT_EQ(state.Status.NumPlayers, 3);
    EXPECT_EQ(state.Status.ScoreTime, "754");
    EXPECT_EQ(state.Players[1].Name, "Gordon");
}

} // namespace
} // namespace tallybot::query
