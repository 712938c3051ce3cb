// The main window over a real MainLogic with fake IRC sockets: controls and menus by name, the
// connect button, the query controls, the tray texts, first activation and the correction dialogs.
#include "gui/frm_main.h"
#include "gui/irc_pane_widget.h"
#include "gui/program_documentation.h"
#include "query/query_cycle.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/logic/logic_fixture.h"
#include "tests/support/qt_wait.h"

#include <filesystem>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QValidator>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

class FrmMainTest : public app::test::LogicTest {
protected:
    void Open(const std::string& ini = "") {
        Start(ini);
        window = std::make_unique<app::frmMain>(*logic, boxes);
        logic->SetViewObserver([this] { window->Refresh(); });
        window->Refresh();
    }
    ~FrmMainTest() override {
        logic->SetViewObserver({});
        window.reset();
    }
    template <class W> W* Get(const char* name) {
        W* widget = window->findChild<W*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    void Type(const char* combo, const char* text) { Get<QComboBox>(combo)->lineEdit()->setText(text); }

    FakeMessageBoxes boxes;
    std::unique_ptr<app::frmMain> window;
};

TEST_F(FrmMainTest, EveryNamedControlAndMenuExists) {
    Open();
    EXPECT_FALSE(window->windowIcon().pixmap(32, 32).isNull());
    for (const char* name : {"cmbIRCServer", "cmbIRCPort", "cmbIRCChannel", "cmbIRCNick", "cmbGamServer"})
        EXPECT_NE(window->findChild<QComboBox*>(name), nullptr) << name;
    for (const char* name :
         {"cmdIRCConnection", "cmdGamQuery", "cmdInfoToIRC", "cmdProfiles", "cmdAssignPlayers", "cmdCorrectScore"})
        EXPECT_NE(window->findChild<QPushButton*>(name), nullptr) << name;
    for (const char* name : {"sstMain", "fraGamGeneral", "ircMain", "rtfIRCOutput", "txtIRCInput", "lvwUsers",
                             "lvwPlayers", "txtTeamNameRed", "txtTeamNameBlue", "lblQueryStatus", "lblHostname"})
        EXPECT_NE(window->findChild<QWidget*>(name), nullptr) << name;
    for (const char* name :
         {"mnuFile", "mnuExtras", "mnuProfiles", "mnuStatToIRC", "mnuCustMess", "mnuInfo", "mnuSysTray"})
        EXPECT_NE(window->findChild<QMenu*>(name), nullptr) << name;
    for (const char* name :
         {"mnuFileQuit",       "mnuExtrasOptions",  "mnuExtrasSeperator", "mnuProfileEdit",   "mnuProfileSel(1)",
          "mnuProfileSel(20)", "mnuPostServer",     "mnuPostServerShort", "mnuPostPlayers",   "mnuPostPlayersShort",
          "mnuPostTeams",      "mnuPostTeamsShort", "mnuPostAbout",       "mnuPostHelp",      "mnuCustMessSel",
          "mnuPostCustomMess", "mnuPostSeperator",  "mnuInfoHelp",        "mnuInfoSeperator", "mnuInfoAbout",
          "mnuSysOpen",        "mnuSysSeperator",   "mnuSysQuit"})
        EXPECT_NE(window->findChild<QAction*>(name), nullptr) << name;
}

TEST_F(FrmMainTest, ConnectButtonNeedsAllFourIrcBoxes) {
    Open();
    auto* connect = Get<QPushButton>("cmdIRCConnection");
    EXPECT_FALSE(connect->isEnabled());
    Type("cmbIRCServer", "irc.test");
    Type("cmbIRCPort", "6667");
    Type("cmbIRCChannel", "#chan");
    EXPECT_FALSE(connect->isEnabled());
    Type("cmbIRCNick", "Bot");
    EXPECT_TRUE(connect->isEnabled());
    Type("cmbIRCPort", "");
    EXPECT_FALSE(connect->isEnabled());
    QString letters = "66a";
    int at = 0;
    EXPECT_EQ(Get<QComboBox>("cmbIRCPort")->lineEdit()->validator()->validate(letters, at), QValidator::Invalid);
}

TEST_F(FrmMainTest, ConnectingDisablesTheIrcBoxesAndRenamesTheButton) {
    Open(IrcIni());
    EXPECT_EQ(Get<QComboBox>("cmbIRCServer")->currentText(), "irc.test");
    emit Get<QComboBox>("cmbIRCNick")->lineEdit()->returnPressed(); // Enter in a box connects
    testsupport::ProcessPendingEvents();
    RegisterIrc();
    EXPECT_EQ(Get<QPushButton>("cmdIRCConnection")->text(), "Dis&connect");
    EXPECT_FALSE(Get<QComboBox>("cmbIRCNick")->isEnabled());
    // The pane shows what the core wrote.
    EXPECT_FALSE(window->IrcPane().Output().toPlainText().isEmpty());
}

TEST_F(FrmMainTest, QueryControlsMirrorTheirCaptionsAndColours) {
    Open(IrcIni());
    EXPECT_EQ(Get<QPushButton>("cmdGamQuery")->text(), "S&tart");
    EXPECT_TRUE(Get<QPushButton>("cmdGamQuery")->isEnabled());
    struct Case {
        const char* caption;
        std::uint32_t colour;
        const char* css;
    };
    for (const Case c :
         {Case{"OFFLINE", query::kColourOffline, "#ff0000"}, Case{"CONNECTING", query::kColourConnecting, "#ffff00"},
          Case{"ONLINE - Q3", query::kColourOnline, "#00c000"}}) {
        logic->View().Query.lblQueryStatusCaption = c.caption;
        logic->View().Query.lblQueryStatusColour = c.colour;
        logic->View().Query.cmdGamQueryCaption = "S&top";
        window->Refresh();
        auto* status = Get<QLabel>("lblQueryStatus");
        EXPECT_EQ(status->text(), c.caption);
        EXPECT_TRUE(status->styleSheet().contains(c.css)) << status->styleSheet().toStdString();
        EXPECT_EQ(Get<QPushButton>("cmdGamQuery")->text(), "S&top");
    }
    Type("cmbGamServer", "");
    EXPECT_FALSE(Get<QPushButton>("cmdGamQuery")->isEnabled());
    Type("cmbGamServer", "127.0.0.1:27960");
    emit Get<QComboBox>("cmbGamServer")->lineEdit()->returnPressed(); // Enter in the address starts the query
    testsupport::ProcessPendingEvents();
    EXPECT_EQ(logic->Settings().ConnState, 2);
}

TEST_F(FrmMainTest, TrayTooltipFollowsTheConnectionState) {
    Open();
    const char* suffixes[] = {" - ready", " - connected to IRC server", " - connected to game server",
                              " - connected to IRC and game server"};
    for (int state = 0; state <= 3; ++state) {
        logic->Settings().ConnState = state;
        window->showMinimized();
        EXPECT_EQ(window->TrayToolTip().toStdString(), std::string("Tallybot") + suffixes[state]);
        window->showNormal();
        EXPECT_EQ(window->windowTitle().toStdString(), logic->View().Caption);
    }
    logic->Settings().MinToTray = 0;
    logic->Settings().ConnState = 1;
    window->showMinimized();
    EXPECT_EQ(window->TrayToolTip().toStdString(), "Tallybot - connected to IRC and game server"); // untouched
}

TEST_F(FrmMainTest, FirstActivationCentresOrRestoresTheStoredState) {
    Open();
    window->Form_Activate();
    const QRect area = window->screen()->availableGeometry();
    EXPECT_NEAR(window->frameGeometry().center().x(), area.center().x(), 2);
    EXPECT_TRUE(area.contains(window->frameGeometry())); // the test screen is smaller than the first size
    logic->SetViewObserver({});
    window.reset();
    logic = std::make_unique<app::MainLogic>(transport, clock);
    Open("[General]\r\nRemWinPos=1\r\nWinState=2\r\nWinTop=40\r\nWinLeft=50\r\n");
    window->Form_Activate();
    EXPECT_TRUE(window->isMaximized());
    // A normal window goes where the file says, in twips: 15 to the pixel at 96 dpi.
    logic->SetViewObserver({});
    window.reset();
    logic = std::make_unique<app::MainLogic>(transport, clock);
    Open("[General]\r\nRemWinPos=1\r\nWinState=0\r\nWinTop=1500\r\nWinLeft=3000\r\n");
    ASSERT_EQ(window->logicalDpiY(), 96);
    window->Form_Activate();
    EXPECT_EQ(window->pos(), QPoint(200, 100));
}

TEST_F(FrmMainTest, AssigningPlayersShowsTheirTeamsInTheList) {
    Open();
    auto& game = logic->Game();
    game.Status.NumPlayers = 2;
    game.Players[1].Name = "alpha";
    game.Players[2].Name = "beta";
    window->RunDialog = [](QDialog& dialog) {
        auto* players = dialog.findChild<QListWidget*>("lvwPlayers");
        players->item(1)->setSelected(true);
        dialog.findChild<QPushButton*>("cmdAssign(1)")->click();
        dialog.findChild<QPushButton*>("cmdAssignAll(0)")->click();
    };
    window->cmdAssignPlayers_Click();
    EXPECT_EQ(game.Players[1].Team, 1);
    EXPECT_EQ(game.Players[2].Team, 2);
    auto* list = Get<QTreeWidget>("lvwPlayers");
    ASSERT_EQ(list->topLevelItemCount(), 2);
    EXPECT_EQ(list->topLevelItem(0)->text(3), "Red");
    EXPECT_EQ(list->topLevelItem(1)->text(3), "Blue");
}

TEST_F(FrmMainTest, ScoreCorrectionMovesThePreviousScoresAndPostsNothing) {
    Open(IrcIni());
    Get<QPushButton>("cmdIRCConnection")->click();
    RegisterIrc();
    const std::size_t sentBefore = transport.sent.size();
    window->RunDialog = [](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("txtScoreRed")->setText("3");
        dialog.findChild<QLineEdit*>("txtScoreBlue")->setText("-2");
        dialog.findChild<QPushButton*>("cmdOK")->click();
    };
    window->cmdCorrectScore_Click();
    EXPECT_EQ(logic->Game().TeamScoreRed, 3);
    EXPECT_EQ(logic->Game().TeamScoreBlue, -2);
    EXPECT_EQ(logic->ReportState().PrevScoreRed, 3);
    EXPECT_EQ(logic->ReportState().PrevScoreBlue, -2);
    EXPECT_EQ(transport.sent.size(), sentBefore);
}

TEST_F(FrmMainTest, ScoreThatIsNoSixteenBitNumberIsRefusedAndScoresStay) {
    Open();
    logic->Game().TeamScoreRed = 4;
    bool stayedOpen = false;
    window->RunDialog = [&](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("txtScoreRed")->setText("40000");
        dialog.findChild<QPushButton*>("cmdOK")->click();
        stayedOpen = dialog.result() != QDialog::Accepted;
    };
    window->cmdCorrectScore_Click();
    EXPECT_TRUE(stayedOpen);
    EXPECT_EQ(logic->Game().TeamScoreRed, 4);
    EXPECT_EQ(boxes.LastText(), "The red score must be a number from -32768 to 32767. The scores were not changed.");
}

TEST_F(FrmMainTest, PostMenuAndProfileMenuFollowTheView) {
    Open();
    logic->View().mnuStatToIRCEnabled = false;
    logic->View().mnuProfileSel[1] = {"ctf", true};
    window->Refresh();
    EXPECT_FALSE(Get<QMenu>("mnuStatToIRC")->isEnabled());
    EXPECT_TRUE(Get<QAction>("mnuProfileSel(1)")->isVisible());
    EXPECT_EQ(Get<QAction>("mnuProfileSel(1)")->text(), "ctf");
    EXPECT_FALSE(Get<QAction>("mnuProfileSel(2)")->isVisible());
    EXPECT_FALSE(Get<QAction>("mnuProfileSel(1)")->isChecked());
    logic->Settings().Profiles.CurrentProfile = 1;
    window->Refresh();
    EXPECT_TRUE(Get<QAction>("mnuProfileSel(1)")->isChecked());
    logic->View().mnuStatToIRCEnabled = true;
    window->Refresh();
    EXPECT_TRUE(Get<QMenu>("mnuStatToIRC")->isEnabled());
}

TEST_F(FrmMainTest, HelpWithoutTheHelpFileOpensTheProgramsDocumentation) {
    Open();
    QUrl opened;
    window->OpenUrl = [&](const QUrl& url) { opened = url; };
    window->mnuInfoHelp_Click();
    EXPECT_TRUE(opened.toLocalFile().endsWith("/README.md")) << opened.toString().toStdString();
    EXPECT_TRUE(boxes.shown.empty());
    // An installed prefix: bin/ beside share/doc/tallybot/.
    std::filesystem::create_directories(home.File("bin"));
    std::filesystem::create_directories(home.File("share/doc/tallybot"));
    test::WriteBytes(home.File("share/doc/tallybot/README.md"), "# Tallybot\n");
    EXPECT_EQ(desktop::ProgramDocumentation(QString::fromStdString(home.File("bin"))).toStdString(),
              home.File("share/doc/tallybot/README.md"));
}

TEST_F(FrmMainTest, TeamNameBoxesFeedTheTemplates) {
    Open();
    Get<QLineEdit>("txtTeamNameRed")->setText("Wolves");
    EXPECT_EQ(logic->View().txtTeamNameRed, "Wolves");
}

} // namespace
} // namespace tallybot::guitest
