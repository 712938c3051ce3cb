// RefreshDisplay's labels and rows, the tray tooltip per ConnState, and pane lines as terminal text.
#include "app/logic/pane_text.h"
#include "tests/logic/logic_fixture.h"

namespace tallybot::app::test {
namespace {

TEST_F(LogicTest, RefreshDisplayShowsTheGameStateWithoutChangingIt) {
    Start();
    query::GameState& g = logic->Game();
    g.Status.HostName = "Red Fort";
    g.Status.MapName = "q3ctf1";
    g.Status.TimeLimit = 20;
    g.Status.MaxClients = 16;
    g.Status.NumPlayers = 3;
    g.Players[1] = {12, 50, "Alice", 1, "", 7};
    g.Players[2] = {3, 999, "Bob", 2, "", 0};
    g.Players[3] = {0, 0, "Watcher", 0, "", 0};
    const query::GameState before = g;

    logic->RefreshDisplay();
    const MainView& v = logic->View();
    EXPECT_EQ(v.lblHostname, "Red Fort");
    EXPECT_EQ(v.lblGameName, "N/A");
    EXPECT_EQ(v.lblMapname, "q3ctf1");
    EXPECT_EQ(v.lblTimelimit, "20");
    EXPECT_EQ(v.lblPlayerInfo, "3 / 16");
    EXPECT_EQ(v.lvwPlayers,
              (std::vector<PlayerRow>{
                  {"Alice", "12", "50", "Red"}, {"Bob", "3", "999", "Blue"}, {"Watcher", "0", "0", "N/A"}}));
    EXPECT_EQ(g.Players, before.Players);
    EXPECT_EQ(g.Status, before.Status);

    g.Status = {};
    logic->RefreshDisplay();
    EXPECT_EQ(logic->View().lblTimelimit, "N/A");
    EXPECT_EQ(logic->View().lblPlayerInfo, "0 / N/A");
    EXPECT_TRUE(logic->View().lvwPlayers.empty());
}

TEST(TrayTooltipTest, NamesTheConnectionsPerConnState) {
    EXPECT_EQ(TrayTooltip(3), "Tallybot - connected to IRC and game server");
    EXPECT_EQ(TrayTooltip(1), "Tallybot - connected to IRC server");
    EXPECT_EQ(TrayTooltip(2), "Tallybot - connected to game server");
    EXPECT_EQ(TrayTooltip(0), "Tallybot - ready");
}

// Pane text (Windows-1252, IRC codes) as standard output: terminal, redirected, raw.
TEST(PaneTextTest, EachStyleWritesTheLineAsExpected) {
    struct Case {
        std::string text;
        irc::Colour colour;
        OutputStyle style;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"a\002\0034b\351", 255, OutputStyle::Ansi, "\x1b[0;91ma\x1b[0;1;91mb\xC3\xA9\x1b[0m"},
        {"<alice> hi", 0, OutputStyle::Ansi, "\x1b[0m<alice> hi\x1b[0m"}, // the default colour: the terminal's
        {"*** Connecting", 0x660000, OutputStyle::Ansi, "\x1b[0;34m*** Connecting\x1b[0m"},
        {"\00308,02x\00300,00y", 0, OutputStyle::Ansi, "\x1b[0;93;44mx\x1b[0;97my\x1b[0m"},
        {"\037u\017v", 0x990099, OutputStyle::Ansi, "\x1b[0;4;35mu\x1b[0;35mv\x1b[0m"},
        {"a\x1b[2J\tb", 0, OutputStyle::Ansi, "\x1b[0ma[2J b\x1b[0m"}, // no escape from the peer reaches the terminal
        {"\0034Red\003 \002x\002\240\200\201\t|", 0, OutputStyle::Plain, "Red x\xC2\xA0\xE2\x82\xAC\xEF\xBF\xBD |"},
        {"\001ACTION waves\001 \x7f\x9f", 0, OutputStyle::Plain, "ACTION waves \xC5\xB8"},
        {"\0034Red\240\t", 0, OutputStyle::Raw, "\0034Red\240\t"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(RenderPaneLine(irc::BuildPaneLine(c.text, c.colour), c.style), c.expected) << c.text;
}

TEST(PaneTextTest, ColourOnlyOnATerminalWithoutNoColorUnlessChosen) {
    using C = ColorChoice;
    using S = OutputStyle;
    // choice, --raw, terminal, NO_COLOR -> style
    const std::vector<std::tuple<C, bool, bool, bool, S>> cases = {
        {C::Auto, false, true, false, S::Ansi},   {C::Auto, false, true, true, S::Plain},
        {C::Auto, false, false, false, S::Plain}, {C::Always, false, false, true, S::Ansi},
        {C::Never, false, true, false, S::Plain}, {C::Auto, true, true, false, S::Raw},
    };
    for (const auto& [choice, raw, terminal, noColor, style] : cases)
        EXPECT_EQ(ChooseOutputStyle(choice, raw, terminal, noColor), style)
            << static_cast<int>(choice) << raw << terminal << noColor;
}

} // namespace
} // namespace tallybot::app::test
