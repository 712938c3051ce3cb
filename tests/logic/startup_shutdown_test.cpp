// Start-up and shutdown order as the log, the view and the settings file show it.
#include "app/settings_file.h"
#include "tests/logic/logic_fixture.h"
#include "tests/support/fixture_file.h"

#include <set>
#include <sstream>

namespace tallybot::app::test {
namespace {

// The keys of an INI text, as "[Section]Key".
std::set<std::string> Keys(const std::string& ini) {
    std::set<std::string> keys;
    std::istringstream in(ini);
    std::string line, section;
    while (std::getline(in, line)) {
        if (!line.empty() && line.front() == '[')
            section = line.substr(0, line.find(']') + 1);
        else if (const auto eq = line.find('='); eq != std::string::npos)
            keys.insert(section + line.substr(0, eq));
    }
    return keys;
}

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

TEST_F(LogicTest, AQueryTimeThatIsNoNumberLeavesTheQueryTimerStill) {
    Start("[Game]\r\n1Host=127.0.0.1:27960\r\nQueryTime=abc\r\n");
    logic->cmdGamQuery_Click();
    ASSERT_TRUE(logic->Query().IsRunning());
    EXPECT_EQ(logic->View().Query.tmrGamQueryInterval, 0);
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
    logic->View().WindowDpiX = 144; // pixels on the screen, twips in the file
    logic->Form_QueryUnload();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_NE(ini.find("WinState=2\r\nModWinTop"), std::string::npos) << ini;
    EXPECT_NE(ini.find("WinTop=165\r\nWinLeft=220\r\n"), std::string::npos) << ini;
}

TEST_F(LogicTest, ShutdownKeepsStoredHistoryWhereTheListIsEmpty) {
    Start(IrcIni());
    logic->View().cmbIRCServer.List = {"new.test", "", "", ""};
    logic->Form_QueryUnload();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_NE(ini.find("1Server=new.test\r\n"), std::string::npos);
    EXPECT_NE(ini.find("2Server=old.test\r\n"), std::string::npos);
}

// One failing step of the shutdown is logged under its own name; the steps after it still run and
// the settings file is complete, holding what this run changed.
struct BrokenStep {
    const char* name;
    const char* logged; // "module;procedure" of the error entry
    void (*breakIt)(MainLogic&, RecordingShell&);
};

void PrintTo(const BrokenStep& step, std::ostream* out) {
    *out << step.name;
}

class ShutdownStepTest : public LogicTest, public ::testing::WithParamInterface<BrokenStep> {};

TEST_P(ShutdownStepTest, AFailingStepIsLoggedAndTheSettingsAreStillSaved) {
    Start(IrcIni() + "[General]\r\nRemWinPos=1\r\n[Extras]\r\nReportAddress=dev@example.org\r\n");
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    logic->cmdGamQuery_Click();
    logic->Settings().ModWinTop = 321; // changed during the run
    GetParam().breakIt(*logic, shell);

    logic->Form_QueryUnload();
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_NE(logic->Log()->LogText().find(std::string(GetParam().logged) + ";" + kStamp), std::string::npos)
        << logic->Log()->LogText();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    EXPECT_EQ(Keys(ini), Keys(tallybot::test::ReadFixture("settings/default.ini")));
    EXPECT_NE(ini.find("ModWinTop=321\r\n"), std::string::npos) << ini;
    EXPECT_EQ(ReadBytes(home.File("Tallybot.log")),
              Entry("frmMain", "Form_QueryUnload", "Application terminated normally"));
}

INSTANTIATE_TEST_SUITE_P(
    Shutdown, ShutdownStepTest,
    ::testing::Values(BrokenStep{"ErrorReport", "clsAppLog;HandleAppErrors",
                                 [](MainLogic& l, RecordingShell& shell) {
                                     shell.questionFails = true;
                                     l.mnuProfileSel_Click(99); // an error, so the report is offered
                                 }},
                      BrokenStep{"HistoryPortOverflow", "frmMain;SaveHistoryCombos",
                                 [](MainLogic& l, RecordingShell&) { l.View().cmbIRCPort.List[0] = "99999999999"; }},
                      BrokenStep{"PlacementOverflow", "frmMain;Form_QueryUnload",
                                 [](MainLogic& l, RecordingShell&) { l.View().WindowTop = 200000000; }}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LogicTest, ShutdownOffersTheErrorReportToTheAddressOfTheSettings) {
    Start("[Extras]\r\nReportAddress=dev@example.org\r\n");
    EXPECT_EQ(logic->Log()->ReportAddress, "dev@example.org");
    logic->mnuProfileSel_Click(99);
    shell.messages.clear();
    logic->Form_QueryUnload();
    ASSERT_EQ(shell.messages.size(), 1u);
    EXPECT_EQ(shell.messages[0].substr(0, 33), "?Tallybot generated 1 error(s) du");
}

} // namespace
} // namespace tallybot::app::test
