// Engine table, clearing rules, team lists, the tokenizer and name cleaning.

#include "base/vb_convert.h"
#include "query/game_state.h"
#include "query/name_colours.h"
#include "tests/support/param_name.h"
#include "tests/support/query_printers.h"

#include <regex>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;

TEST(EngineCodeTest, CodesOfEveryIdAndNoneOutsideTheTable) {
    const char* expected[] = {"",      "Q2",  "Q3", "UT", "HL",  "RTCW", "EF",  "JK2", "SoF2",
                              "UT2k3", "MoH", "ET", "JA", "CoD", "AA",   "EF2", "FC",  "D3"};
    for (int id = 0; id <= 17; ++id)
        EXPECT_EQ(EngineCode(id), expected[id]) << id;
    EXPECT_EQ(EngineCode(99), "");
    EXPECT_EQ(EngineCode(-1), "");
    EXPECT_EQ(EngineCode(18), "");
}

TEST(ClearServerStatusTest, VersionAndGameNameBecomeZeroText) {
    ServerStatus s;
    s.GameType = "4";
    s.CaptureLimit = 8;
    s.MaxClients = 16;
    s.HostName = "x";
    s.ScoreRed = 3;
    s.ScoreTime = "10:00";
    s.NumPlayers = 7;
    ClearServerStatus(s);
    ServerStatus expected;
    expected.Version = "0";
    expected.GameName = "0";
    EXPECT_EQ(s, expected);
}

TEST(ClearPlayersTest, ClearsFromFirstAndKeepsFlagOnlyWhenAsked) {
    PlayerTable t{};
    for (int i = 0; i <= kMaxPlayers; ++i)
        t[i] = PlayerStatus{5, 60, "p", 1, "m", 9};
    ClearPlayers(t, 3, 1);
    EXPECT_EQ(t[2], (PlayerStatus{5, 60, "p", 1, "m", 9}));
    EXPECT_EQ(t[3], (PlayerStatus{0, 0, "", 0, "", 9}));
    EXPECT_EQ(t[50], (PlayerStatus{0, 0, "", 0, "", 9}));
    ClearPlayers(t, 0, 0);
    for (const auto& p : t)
        EXPECT_EQ(p, PlayerStatus{});
}

TEST(AssignTeamListTest, SetsTeamsAndStopsAtAnIndexError) {
    PlayerTable t{};
    AssignTeamList("0 2 50", t, 1);
    EXPECT_EQ(t[0].Team, 1);
    EXPECT_EQ(t[1].Team, 0);
    EXPECT_EQ(t[2].Team, 1);
    EXPECT_EQ(t[50].Team, 1);
    try {
        AssignTeamList("4 51 6", t, 2);
        FAIL() << "no index error";
    } catch (const vb::VbError& e) {
        EXPECT_EQ(e.Number(), vb::kSubscriptOutOfRange);
    }
    EXPECT_EQ(t[4].Team, 2);
    EXPECT_EQ(t[6].Team, 0);
    EXPECT_THROW(AssignTeamList("-1", t, 2), vb::VbError);
    EXPECT_THROW(AssignTeamList("x", t, 2), vb::VbError);
}

TEST(ExtractStringTest, TakesTheHeadOrTheRest) {
    std::string src = "a\\b\\\\c";
    EXPECT_EQ(ExtractString(src, "\\"), "a");
    EXPECT_EQ(src, "b\\\\c");
    EXPECT_EQ(ExtractString(src, "\\"), "b");
    EXPECT_EQ(ExtractString(src, "\\"), "");
    EXPECT_EQ(ExtractString(src, "\\"), "c");
    EXPECT_EQ(src, "");
    EXPECT_EQ(ExtractString(src, "\\"), "");
    std::string bytes = "x\0y\0"s;
    EXPECT_EQ(ExtractString(bytes, "\0"s), "x");
    EXPECT_EQ(bytes, "y\0"s);
}

// in, ClearName's result, GameColoursToIrc's result ("{04}" stands for code 3 and "04", "|" for
// the closing reset, code 15).
struct NameCase {
    std::string in;
    std::string out;
    std::string irc;
};

std::string Codes(const std::string& pattern) {
    return std::regex_replace(std::regex_replace(pattern, std::regex("\\{([0-9]{2})\\}"), "\x03$1"), std::regex("\\|"),
                              "\x0F");
}

class ClearNameTest : public ::testing::TestWithParam<NameCase> {};

TEST_P(ClearNameTest, StripsColourCodesAndQuotes) {
    EXPECT_EQ(ClearName(GetParam().in), GetParam().out);
    EXPECT_EQ(CleanName(GetParam().in, false), GetParam().out);
}

TEST_P(ClearNameTest, GameColoursBecomeTheNearestIrcColoursClosedByAReset) {
    EXPECT_EQ(GameColoursToIrc(GetParam().in), Codes(GetParam().irc));
    EXPECT_EQ(CleanName(GetParam().in, true), Codes(GetParam().irc));
    EXPECT_EQ(WithoutIrcColours(Codes(GetParam().irc)), GetParam().out); // as the window shows it
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ClearNameTest,
    ::testing::Values(NameCase{"^1Red^7Name", "RedName", "{04}Red{00}Name|"},
                      NameCase{"^Xff00ffName", "Name", "{13}Name|"}, NameCase{"^xZZZZZZName", "Name", "Name"},
                      NameCase{"^X1a2b3cT", "T", "{02}T|"}, NameCase{"a^z", "a^z", "a^z"}, NameCase{"a^b", "a", "a"},
                      NameCase{"^Nx^nY^Bz^b", "xYz", "xYz"},
                      NameCase{"\"Quoted ^2One\"", "Quoted One", "Quoted {09}One|"}, NameCase{"end^", "end^", "end^"},
                      NameCase{"^^1x", "^x", "^{04}x|"}, NameCase{"^11337", "1337", "{04}1337|"},
                      NameCase{"^0a^8b^9c^3d^4e^5f^6g", "abcdefg", "{01}a{07}b{14}c{08}d{12}e{11}f{13}g|"},
                      NameCase{"^X12", "", ""}, NameCase{"ab^Xff", "ab", "ab"}, NameCase{"^\"q", "^q", "^q"},
                      NameCase{"", "", ""}, NameCase{"\xE9l\xE8ve\xFF", "\xE9l\xE8ve\xFF", "\xE9l\xE8ve\xFF"}),
    [](const auto& info) { return testsupport::ParamWord(info.param.in); });

TEST(UnrealColoursTest, ByteTwentySevenAndThreeColourBytesBecomeTheNearestIrcColour) {
    const std::pair<std::string, std::string> cases[] = {
        {"\x1B\xFF\x01\x01Red\x1B\x01\x01\xFF"
         "Blue",
         "{04}Red{12}Blue|"},
        {"\x1B\xFF\xFF\xFF\x1B\x80\x80\x80", "{00}{14}|"},
        {"ab\x1B\x10", "ab"},
        {"plain ^1", "plain ^1"},
    };
    for (const auto& [in, irc] : cases)
        EXPECT_EQ(UnrealColoursToIrc(in), Codes(irc)) << in;
}

} // namespace
} // namespace tallybot::query
