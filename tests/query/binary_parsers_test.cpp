// The Half-Life, FarCry, UT2003 and Doom 3 sub-replies on fixtures: each fills only its own fields and
// leaves the rest of the state as it found it.

#include "query/parsers.h"
#include "tests/support/query_printers.h"
#include "tests/support/reply_fixture.h"

#include <gtest/gtest.h>

// The expected records name only the fields a reply sets; the rest stay at their defaults on purpose.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace tallybot::query {
namespace {

using testsupport::ExpectPlayers;
using testsupport::PlayerRow;
using testsupport::ReadReplyFixture;
using Parser = void (*)(std::string_view, GameState&, const profiles::GameProfile&);

struct SubReplyCase {
    const char* name;
    Parser parse;
    const char* fixture;
    ServerStatus before; // what earlier replies left
    ServerStatus after;  // the whole record once this reply is parsed
    std::vector<PlayerRow> players;
    PlayerStatus beyond;          // the slot after the rows: set to "Stale" before, this afterwards
    std::int16_t secondScore = 0; // slot 2's score before the reply
};

void PrintTo(const SubReplyCase& c, std::ostream* os) {
    *os << c.name;
}

const PlayerStatus kStale{3, 40, "Stale", 1, "", 0};

class SubReplyTest : public ::testing::TestWithParam<SubReplyCase> {};

TEST_P(SubReplyTest, FillsItsOwnFields) {
    const SubReplyCase& c = GetParam();
    GameState state;
    state.Status = c.before;
    const auto beyondSlot = c.players.size() + 1;
    state.Players[beyondSlot] = kStale;
    state.Players[2].Score = c.secondScore;
    c.parse(ReadReplyFixture(c.fixture), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status, c.after);
    ExpectPlayers(state.Players, c.players);
    EXPECT_EQ(state.Players[beyondSlot], c.beyond);
}

const ServerStatus kDoom3{.GameType = "dm",
                          .MaxClients = 8,
                          .TimeLimit = 15,
                          .FragLimit = 25,
                          .HostName = "Tally D3",
                          .Version = "0",
                          .MapName = "game/mp/d3dm1",
                          .GameName = "baseDOOM-1",
                          .GameVersion = "DOOM 1.3.1.1304 linux-x86"};

ServerStatus WithPlayers(ServerStatus s, int players) {
    s.NumPlayers = players;
    return s;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Fixtures, SubReplyTest, ::testing::Values(
    SubReplyCase{"HalfLifeInfo", ParseHLReply, "hl/info.bin", {.TimeLimit = 30},
        {.MaxClients = 16, .TimeLimit = 30, .HostName = "Tally HL Server", .Version = "Half-Life",
         .MapName = "crossfire", .GameName = "valve"}, {}, kStale},
    // 300 frags read as 44, -1 as 255.
    SubReplyCase{"HalfLifePlayersKeepTheLowByte", ParseHLReply, "hl/players.bin", {.HostName = "kept"},
        {.HostName = "kept", .NumPlayers = 3}, {{"Gordon", 44, 0, 0}, {"Barney", 5, 0, 0}, {"Alyx", 255, 0, 0}}, {}},
    SubReplyCase{"HalfLifeRules", ParseHLReply, "hl/rules.bin", {.HostName = "kept"},
        {.TimeLimit = 30, .FragLimit = 10, .HostName = "kept", .ScoreTime = "754"}, {}, kStale},
    SubReplyCase{"FarCryStatus", ParseFCReply, "fc/status.bin", {.FragLimit = 30},
        {.MaxClients = 32, .FragLimit = 30, .HostName = "Tally FC Server", .Version = "1395",
         .MapName = "mp_airstrip", .GameName = "FarCry", .GameVersion = "1.4.0.1395", .NumPlayers = 3}, {}, kStale},
    // Slot 2 held 9 and the reply's score text for it is empty: the old score stays.
    SubReplyCase{"FarCryPlayersOneByteScoresAndPings", ParseFCReply, "fc/players.bin", {.NumPlayers = 3},
        {.NumPlayers = 3}, {{"Jack", 12, 50, 0}, {"Val", 9, 80, 0}, {"Doyle", 7, 120, 0}}, {}, 9},
    SubReplyCase{"FarCryRulesRoundTimeLimitHalfToEven", ParseFCReply, "fc/rules.bin", {}, // "20.5"
        {.TimeLimit = 20, .FragLimit = 30}, {}, kStale},
    SubReplyCase{"UT2003ServerFixedVersion", ParseUT2003Reply, "ut2k3/info.bin", {.TimeLimit = 20},
        {.MaxClients = 16, .TimeLimit = 20, .HostName = "Tally UT2003 Server", .Version = "UT 2003",
         .MapName = "DM-Antalus", .GameName = "xDeathMatch"}, {}, kStale},
    SubReplyCase{"UT2003RulesTimeLimitOnly", ParseUT2003Reply, "ut2k3/rules.bin", {.HostName = "kept"},
        {.TimeLimit = 20, .HostName = "kept", .ScoreTime = "N/A"}, {}, kStale},
    // Ping 300 read as 44, score -2 as 254; later slots are left.
    SubReplyCase{"UT2003PlayersLowBytes", ParseUT2003Reply, "ut2k3/players.bin", {}, {.NumPlayers = 3},
        {{"Malcolm", 25, 44, 0}, {"Gorge", 254, 60, 0}, {"Lauren", 9, 70, 0}}, kStale},
    // High byte first: 00 32 is 50, 32 00 is 12800; 80 01 overflows and leaves the ping.
    SubReplyCase{"Doom3Info", ParseD3EngineData, "d3/info.bin", {}, WithPlayers(kDoom3, 3),
        {{"Marine", 0, 50, 0}, {"Green", 0, 12800, 0}, {"Doomguy", 0, 0, 0}}, {}},
    SubReplyCase{"Doom3ListEndingInClient0x20HasNoPlayers", ParseD3EngineData, "d3/noplayers.bin", {},
        kDoom3, {}, {}}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

TEST(SubReplyTest, ThreeHalfLifeRepliesCombine) {
    GameState state;
    for (const char* name : {"hl/info.bin", "hl/players.bin", "hl/rules.bin"})
        ParseHLReply(ReadReplyFixture(name), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status.HostName, "Tally HL Server");
    EXPECT_EQ(state.Status.NumPlayers, 3);
    EXPECT_EQ(state.Status.ScoreTime, "754");
    EXPECT_EQ(state.Players[1].Name, "Gordon");
}

TEST(SubReplyTest, Doom3EntryAppliesTheProfileTimeRuleAndIgnoresDisconnect) {
    profiles::GameProfile advanced;
    advanced.Advanced = 1;
    GameState state;
    ParseEngineReply(kEngineD3, ReadReplyFixture("d3/info.bin"), state, advanced);
    EXPECT_EQ(state.Status.ScoreTime, "");
    ParseEngineReply(kEngineD3, ReadReplyFixture("d3/info.bin"), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status.ScoreTime, "N/A");
    const GameState before = state;
    ParseEngineReply(kEngineD3, std::string("\xFF\377disconnect\0", 13), state, profiles::GameProfile{});
    EXPECT_EQ(state.Status, before.Status);
    EXPECT_EQ(state.Players, before.Players);
}

} // namespace
} // namespace tallybot::query
