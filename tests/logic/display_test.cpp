// RefreshDisplay's labels and rows, and the tray tooltip per ConnState.
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
    EXPECT_EQ(v.lvwPlayers, (std::vector<PlayerRow>{
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

TEST(RenderAnsiTest, ColoursBoldAndLatin1BecomeTerminalText) {
    const irc::PaneLine line = irc::BuildPaneLine("a\002\0034b\351", 255);
    EXPECT_EQ(RenderAnsi(line), "\x1b[0;38;2;255;0;0ma\x1b[0;1;38;2;255;0;0mb\xC3\xA9\x1b[0m");
}

} // namespace
} // namespace tallybot::app::test
