// GameSpy "\status\" replies of UT and AA: fields, player groups, the ping cap and the CTF rule.

#include "query/parsers.h"
#include "tests/support/query_printers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::ReadReplyFixture;

const profiles::GameProfile kNoProfile{};

GameState Parse(const std::string& reply, GameState state = {}) {
    ParseGameSpy(reply, state, kNoProfile);
    return state;
}

TEST(GameSpyParserTest, UnrealTournamentStatusFillsEveryField) {
    GameState state = Parse(ReadReplyFixture("ut/status.bin"));
    ServerStatus expected;
    expected.GameType = "CTF"; // "CTFGame"
    expected.CaptureLimit = 5;
    expected.MaxClients = 16;
    expected.TimeLimit = 20;
    expected.FragLimit = 0; // the reply's fraglimit is never read
    expected.HostName = "^1Tally UT Server";
    expected.Version = "4.36";
    expected.MapName = "CTF-Face";
    expected.GameName = "0";
    expected.ScoreRed = 15;
    expected.ScoreBlue = 7;
    expected.ScoreTime = "N/A";
    expected.NumPlayers = 3;
    EXPECT_EQ(state.Status, expected);
    ExpectPlayers(state.Players, {{"Alpha", 12, 50, 1}, {"Bravo", 7, 999, 2}, {"Charlie", 3, 80, 1}});
    EXPECT_EQ(state.Players[4], PlayerStatus{});
}

TEST(GameSpyParserTest, TwoDatagramsJoinedParseLikeOne) {
    GameState joined = Parse(ReadReplyFixture("ut/first_datagram.bin") + ReadReplyFixture("ut/second_datagram.bin"));
    GameState single = Parse(ReadReplyFixture("ut/status.bin"));
    EXPECT_EQ(joined.Status, single.Status);
    EXPECT_EQ(joined.Players, single.Players);
}

TEST(GameSpyParserTest, AmericasArmyKeysAnyCaseAndFourthPingCapped) {
    GameState state = Parse(ReadReplyFixture("aa/status.bin"));
    EXPECT_EQ(state.Status.GameType, "AssaultGame");
    EXPECT_EQ(state.Status.HostName, "\"AA\" Tally Server"); // not cleaned
    EXPECT_EQ(state.Status.Version, "2.3");
    EXPECT_EQ(state.Status.NumPlayers, 4);
    EXPECT_EQ(state.Status.MaxClients, 24);
    EXPECT_EQ(state.Status.TimeLimit, 25);
    EXPECT_EQ(state.Status.CaptureLimit, 2);
    ExpectPlayers(
        state.Players,
        {{"Sgt Pepper", 40, 60, 2}, {"Pvt Parts", 10, 70, 1}, {"Cpl Punishment", -5, 999, 2}, {"Maj Tom", 22, 999, 1}});
    EXPECT_EQ(state.Status.ScoreRed, 32);
    EXPECT_EQ(state.Status.ScoreBlue, 35);
}

struct GameSpyCase {
    const char* name;
    std::string reply;
    std::string gameType, version, mapName;
    std::vector<testsupport::PlayerRow> players;
};

class GameSpyQuirkTest : public ::testing::TestWithParam<GameSpyCase> {};

TEST_P(GameSpyQuirkTest, Fields) {
    const GameSpyCase& c = GetParam();
    GameState state = Parse(c.reply);
    EXPECT_EQ(state.Status.GameType, c.gameType);
    EXPECT_EQ(state.Status.Version, c.version);
    EXPECT_EQ(state.Status.MapName, c.mapName);
    ExpectPlayers(state.Players, c.players);
}

INSTANTIATE_TEST_SUITE_P(
    Replies, GameSpyQuirkTest,
    ::testing::Values(
        GameSpyCase{"CtfInAnyCase", "\\gametype\\xctfgame\\final\\", "CTF", "0", "", {}},
        GameSpyCase{"VersionNotNumeric", "\\gamever\\4.3x\\mapname\\DM-Deck16\\final\\", "", "0", "DM-Deck16", {}},
        GameSpyCase{"VersionDividedBy100", "\\gamever\\400\\final\\", "", "4", "", {}},
        GameSpyCase{"UnknownKeyValueTriedAsKey", "\\foo\\mapname\\Bar\\final\\", "", "0", "Bar", {}},
        GameSpyCase{"EmptyTokenEndsScan", "\\mapname\\A\\\\gametype\\TDM\\final\\", "", "0", "A", {}},
        // Without team_0 the counter stays, so the second group's _1 keys are skipped.
        GameSpyCase{"GroupWithoutTeamKey",
                    "\\numplayers\\2\\player_0\\A\\frags_0\\3\\player_1\\B\\frags_1\\4\\team_1\\0\\final\\",
                    "",
                    "0",
                    "",
                    {{"A", 3, 0, 0}, {"", 0, 0, 0}}},
        GameSpyCase{"GroupsOutOfOrderStayInSlot",
                    "\\numplayers\\2\\player_0\\A\\team_0\\1\\frags_0\\9\\player_1\\B\\team_1\\0\\final\\",
                    "",
                    "0",
                    "",
                    {{"A", 0, 0, 2}, {"B", 0, 0, 1}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GameSpyParserTest, SlotsAfterNumPlayersAreCleared) {
    GameState before;
    before.Players[2] = PlayerStatus{5, 60, "old", 1, "m", 3};
    GameState after = Parse("\\numplayers\\1\\player_0\\A\\team_0\\0\\final\\", before);
    EXPECT_EQ(after.Players[2], PlayerStatus{});
}

} // namespace
} // namespace tallybot::query
