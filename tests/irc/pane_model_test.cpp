#include "fake_irc_transport.h"
#include "irc/pane_model.h"
#include "irc/pane_words.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

PaneRun Run(std::string text, Colour fg, bool bold = false, bool underline = false,
            std::optional<Colour> bg = std::nullopt) {
    return PaneRun{std::move(text), fg, bg, bold, underline};
}

struct PaneCase {
    std::string name;
    std::string text;
    std::vector<PaneRun> runs;
};

class PaneRuns : public ::testing::TestWithParam<PaneCase> {};

TEST_P(PaneRuns, FollowTheControlCodes) {
    EXPECT_EQ(BuildPaneLine(GetParam().text, 0x660000).Runs, GetParam().runs);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, PaneRuns,
    ::testing::Values(PaneCase{"Plain", "hello\r\n", {Run("hello", 0x660000)}},
                      PaneCase{"BoldTwiceIsNormal",
                               "a\002b\002c",
                               {Run("a", 0x660000), Run("b", 0x660000, true), Run("c", 0x660000)}},
                      PaneCase{"Underline", "\x1Fu\x1Fn", {Run("u", 0x660000, false, true), Run("n", 0x660000)}},
                      PaneCase{"ResetRestoresColourBoldUnderline",
                               "\002\037\0034r\017n",
                               {Run("r", 0x0000FF, true, true), Run("n", 0x660000)}},
                      PaneCase{"ForegroundAndBackground", "\00304,12x", {Run("x", 0x0000FF, false, false, 0xFC0000)}},
                      PaneCase{"ColourSixteenChangesNothing", "\00316x", {Run("x", 0x660000)}},
                      PaneCase{"ColourSixteenEndsTheCode", "\00399,3x", {Run(",3x", 0x660000)}},
                      PaneCase{"ThreeDigitsReadTwo", "\003123", {Run("3", 0xFC0000)}},
                      PaneCase{"CommaWithoutDigitsIsText", "\0033,x", {Run(",x", 0x009300)}},
                      PaneCase{"BareColourCode", "\x03x", {Run("x", 0x660000)}},
                      PaneCase{"TopicCloser", "'t\0033'", {Run("'t", 0x660000), Run("'", 0x009300)}}),
    [](const auto& info) { return info.param.name; });

TEST(Pane, TimeStampPutsShortTimeInFront) {
    testing::IrcRig rig;
    rig.irc.Properties().TimeStamp = true;
    rig.irc.AddText("hi\r\n", 255);
    EXPECT_EQ(rig.LastPane(), "[09:05] hi");
    EXPECT_EQ(rig.irc.PaneLines().back().PlainText(), "[09:05] hi");
}

TEST(Pane, ModelIsBoundedAndConnectClearsIt) {
    testing::IrcRig rig;
    for (std::size_t i = 0; i < uscIRC::kPaneLimit + 5; ++i)
        rig.irc.AddText("x", 0);
    EXPECT_EQ(rig.irc.PaneLines().size(), uscIRC::kPaneLimit);
    rig.irc.Connect();
    EXPECT_EQ(rig.irc.PaneLines().size(), 1u);
}

TEST(PaneWords, BoundariesAndKinds) {
    const std::string line = "see (http://x.org/a), join #ctf or irc.net";
    EXPECT_EQ(WordAt(line, 8), "http://x.org/a");
    EXPECT_EQ(WordAt(line, 28), "#ctf");
    EXPECT_EQ(WordAt(line, 3), "");
    EXPECT_EQ(ClassifyWord("HTTP://x.org"), WordKind::Link);
    EXPECT_EQ(ClassifyWord("mailto:a@b"), WordKind::Link);
    EXPECT_EQ(ClassifyWord("page.HTM"), WordKind::Link);
    EXPECT_EQ(ClassifyWord("#ctf"), WordKind::Channel);
    EXPECT_EQ(ClassifyWord("irc.net"), WordKind::Server);
    EXPECT_EQ(ClassifyWord("word"), WordKind::Plain);
}

} // namespace
} // namespace tallybot::irc
