#include "irc/irc_framing.h"
#include "irc/irc_wire.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

struct FramingCase {
    const char* name;
    std::vector<std::string> arrivals;
    std::vector<std::string> lines; // over all arrivals
    std::string carry;
};

class Framing : public ::testing::TestWithParam<FramingCase> {};

TEST_P(Framing, CutsLinesAsTheControlDoes) {
    LineFramer framer;
    std::vector<std::string> lines;
    for (const auto& a : GetParam().arrivals) {
        auto r = framer.Feed(a);
        EXPECT_FALSE(r.Overflow);
        lines.insert(lines.end(), r.Lines.begin(), r.Lines.end());
    }
    EXPECT_EQ(lines, GetParam().lines);
    EXPECT_EQ(framer.Carry(), GetParam().carry);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Framing,
    ::testing::Values(FramingCase{"TwoLines", {"A\r\nB\r\n"}, {"A\r\n", "B\r\n"}, ""},
                      FramingCase{"SplitAcrossArrivals", {":s 001 n :Wel", "come\r\n"}, {":s 001 n :Welcome\r\n"}, ""},
                      FramingCase{"SplitInsideCrLf", {"PING :x\r", "\nNEXT\r\n"}, {"PING :x\r", "\nN", "EXT\r\n"}, ""},
                      FramingCase{"LoneLfSwallowsNextCharacter", {"abc\nXYZ\r\n"}, {"abc\nX", "YZ\r\n"}, ""},
                      FramingCase{
                          "FirstCharacterAfterCutIsNotASeparator", {"a\r\n\r\nb\r\n"}, {"a\r\n", "\r\nb", "\r\n"}, ""},
                      FramingCase{"FirstCharacterOfArrivalIsExamined", {"\nabc"}, {"\na"}, "bc"},
                      FramingCase{"TailKept", {"one\r\ntwo"}, {"one\r\n"}, "two"},
                      FramingCase{"SeparatorAtEnd", {"x\n"}, {"x\n"}, ""}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Framing, FourHundredLinesInOneArrivalIsAFault) {
    LineFramer framer;
    std::string burst;
    for (int i = 0; i < 399; ++i)
        burst += "L\r\n";
    EXPECT_EQ(framer.Feed(burst).Lines.size(), 399u);
    auto r = framer.Feed(burst + "L\r\nrest");
    EXPECT_TRUE(r.Overflow);
    EXPECT_TRUE(r.Lines.empty());
}

TEST(Framing, CarryBufferIsBounded) {
    LineFramer framer;
    framer.Feed(std::string(LineFramer::kCarryLimit + 1, 'x'));
    EXPECT_TRUE(framer.Carry().empty());
    EXPECT_EQ(framer.Feed("ok\r\n").Lines, std::vector<std::string>{"ok\r\n"});
}

TEST(WireLine, StripsCrLfAndNulInsideAndEndsWithOneCrLf) {
    EXPECT_EQ(WireLine("PRIVMSG #c :a\rQUIT\nb"), "PRIVMSG #c :a QUIT b\r\n");
    EXPECT_EQ(WireLine(std::string("x\0y\r\n", 5)), "x y\r\n");
    EXPECT_EQ(WireLine("x\r\n\r\n"), "x  \r\n");
}

TEST(WireLine, NeverLongerThan512Bytes) {
    const std::string line = WireLine("PRIVMSG #c :" + std::string(600, 'a'));
    EXPECT_EQ(line.size(), 512u);
    EXPECT_EQ(line.substr(510), "\r\n");
    EXPECT_EQ(WireLine(std::string(510, 'b')).size(), 512u);
}

} // namespace
} // namespace tallybot::irc
