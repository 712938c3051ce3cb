// Doom 3 info replies, and the engine entry around them.

#include "query/parsers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::ReadReplyFixture;

TEST(Doom3ParserTest, InfoReplyFillsKeysAndPlayers) {
    GameState state;
    ParseD3EngineData(ReadReplyFixture("d3/info.bin"), state, profiles::GameProfile{});
    ServerStatus expected;
    expected.GameType = "dm";
    expected.MaxClients = 8;
    expected.TimeLimit = 15;
    expected.FragLimit = 25;
    expected.HostName = "Tally D3";
    expected.Version = "0";
    expected.MapName = "game/mp/d3dm1";
    expected.GameName = "baseDOOM-1";
    expected.GameVersion = "DOOM 1.3.1.1304 linux-x86";
    expected.NumPlayers = 3;
    EXPECT_EQ(state.Status, expected);
    // High byte first: 00 32 is 50, 32 00 is 12800; 80 01 overflows and leaves the ping.
    ExpectPlayers(state.Players, {{"Marine", 0, 50, 0}, {"Green", 0, 12800, 0}, {"Doomguy", 0, 0, 0}});
}

TEST(Doom3ParserTest, ListEndingInClient0x20HasNoPlayers) {
    GameState state;
    state.Players[1] = PlayerStatus{4, 30, "old", 1, "m", 2};
    ParseD3EngineData(ReadReplyFixture("d3/noplayers.bin"), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status.NumPlayers, 0);
    EXPECT_EQ(state.Status.HostName, "Tally D3");
    EXPECT_EQ(state.Players[1], PlayerStatus{});
}

TEST(Doom3ParserTest, EntryAppliesTheTimeRuleOfTheProfile) {
    profiles::GameProfile advanced;
    advanced.Advanced = 1;
    GameState state;
    ParseEngineReply(kEngineD3, ReadReplyFixture("d3/info.bin"), state, advanced);
    EXPECT_EQ(state.Status.ScoreTime, "");
    ParseEngineReply(kEngineD3, ReadReplyFixture("d3/info.bin"), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status.ScoreTime, "N/A");
    EXPECT_EQ(state.Status.HostName, "Tally D3");
}

TEST(Doom3ParserTest, EntryIgnoresDisconnect) {
    GameState state;
    state.Status.HostName = "kept";
    state.Status.NumPlayers = 4;
    ParseEngineReply(kEngineD3,
                     std::string("\xFF\xFF"
                                 "disconnect\0",
                                 13),
                     state, profiles::GameProfile{});
    EXPECT_EQ(state.Status.HostName, "kept");
    EXPECT_EQ(state.Status.NumPlayers, 4);
}

} // namespace
} // namespace tallybot::query
