// Start-up and shutdown order as the log, the view and the settings file show it.
#include "app/settings_file.h"
#include "tests/logic/logic_fixture.h"

namespace tallybot::app::test {
namespace {

std::string Entry(const std::string& module, const std::string& procedure, const std::string& message) {
    return module + ";" + procedure + ";" + kStamp + ";0;" + message + "\r\n";
}

TEST_F(LogicTest, StartupStartsAFreshLogAndLogsMainThenFormLoad) {
    WriteBytes(home.File("Tallybot.log"), "left over from the last run\r\n");
    Start(IrcIni());
    const std::string expected =
        Entry("modMain", "Main", "Application startup, initializing") + Entry("frmMain", "Form_Load", "Form loaded");
    EXPECT_EQ(logic->Log()->LogText(), expected);
    EXPECT_EQ(ReadBytes(home.File("Tallybot.log")), expected);
}

TEST_F(LogicTest, FormLoadFillsHistoriesAndTimers) {
    Start(IrcIni());
    const MainView& v = logic->View();
    EXPECT_EQ(v.cmbIRCServer.List, (std::vector<std::string>{"irc.test", "old.test", "", ""}));
    EXPECT_EQ(v.cmbIRCPort.List, (std::vector<std::string>{"6667", "7000", "", ""}));
    EXPECT_EQ(v.cmbIRCNick.Text, "Bot");
    EXPECT_EQ(v.Query.cmbGamServerText, "127.0.0.1:27960");
    EXPECT_EQ(v.Query.tmrGamQueryInterval, 900);
    EXPECT_TRUE(v.cmdIRCConnectionEnabled);
    EXPECT_TRUE(v.cmdGamQueryEnabled);
    EXPECT_EQ(v.Caption, "Tallybot 1.0.0");
    // The send delay runs from start-up; the other two timers wait.
    ASSERT_TRUE(timers.Last(MainTimer::IRCSendDelay));
    EXPECT_TRUE(timers.Last(MainTimer::IRCSendDelay)->enabled);
    EXPECT_EQ(timers.Last(MainTimer::IRCSendDelay)->interval, 1000);
    EXPECT_FALSE(timers.Last(MainTimer::IRCPost)->enabled);
    EXPECT_FALSE(timers.Last(MainTimer::GamQuery)->enabled);
}

TEST_F(LogicTest, FirstStartWithoutSettingsLeavesBoxesEmptyAndConnectDisabled) {
    Start();
    const MainView& v = logic->View();
    EXPECT_EQ(v.cmbIRCServer.Text, "");
    EXPECT_EQ(v.cmbIRCPort.Text, "");
    EXPECT_FALSE(v.cmdIRCConnectionEnabled);
    EXPECT_FALSE(v.cmdGamQueryEnabled);
    logic->SetIrcText(&MainView::cmbIRCServer, "irc.test");
    logic->SetIrcText(&MainView::cmbIRCPort, "6667");
    logic->SetIrcText(&MainView::cmbIRCChannel, "#c");
    EXPECT_FALSE(logic->View().cmdIRCConnectionEnabled);
    logic->SetIrcText(&MainView::cmbIRCNick, "n");
    EXPECT_TRUE(logic->View().cmdIRCConnectionEnabled);
}

TEST_F(LogicTest, ShutdownStopsQueryThenQuitsIrcThenSavesAndEndsWithAFreshLog) {
    Start(IrcIni() + "[General]\r\nRemWinPos=0\r\n");
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    logic->cmdGamQuery_Click();
    ASSERT_EQ(logic->Settings().ConnState, 3);
    logic->View().WindowTop = 11; // not stored: RemWinPos is 0

    logic->Form_QueryUnload();
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_EQ(logic->View().Query.cmdGamQueryCaption, "S&tart");
    EXPECT_EQ(transport.Last(), "QUIT \00310Tallybot\0032\2401.0.0\240\00310by\240\0032Kavik\r\n");
    EXPECT_EQ(ReadBytes(home.File("Tallybot.log")),
              Entry("frmMain", "Form_QueryUnload", "Application terminated normally"));
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_NE(ini.find("1Server=irc.test\r\n"), std::string::npos);
    EXPECT_NE(ini.find("2Port=7000\r\n"), std::string::npos);
    EXPECT_NE(ini.find("WinTop=500\r\n"), std::string::npos);
}

TEST_F(LogicTest, ShutdownStoresWindowPlacementOnlyWithRemWinPos) {
    Start("[General]\r\nRemWinPos=1\r\n");
    logic->View().WindowState = 2;
    logic->View().WindowTop = 11;
    logic->View().WindowLeft = 22;
    logic->Form_QueryUnload();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_NE(ini.find("WinState=2\r\nModWinTop"), std::string::npos) << ini;
    EXPECT_NE(ini.find("WinTop=11\r\n"), std::string::npos);
    EXPECT_NE(ini.find("WinLeft=22\r\n"), std::string::npos);
}

TEST_F(LogicTest, ShutdownKeepsStoredHistoryWhereTheListIsEmpty) {
    Start(IrcIni());
    logic->View().cmbIRCServer.List = {"new.test", "", "", ""};
    logic->Form_QueryUnload();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_NE(ini.find("1Server=new.test\r\n"), std::string::npos);
    EXPECT_NE(ini.find("2Server=old.test\r\n"), std::string::npos);
}

} // namespace
} // namespace tallybot::app::test
