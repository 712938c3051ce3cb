// The main window over a real MainLogic with fake IRC sockets, beyond its scripts
// (tests/data/gui/main_window.script): the first place on screen and the help.
#include "gui/frm_main.h"
#include "gui/program_documentation.h"
#include "gui/window_geometry.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/logic/logic_fixture.h"

#include <filesystem>

#include <QScreen>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

class FrmMainTest : public ::testing::Test, protected app::test::LogicRig {
protected:
    void Open(const std::string& ini = "") {
        if (window) {
            logic->SetViewObserver({});
            window.reset();
            logic = std::make_unique<app::MainLogic>(transport, clock);
        }
        Start(ini);
        window = std::make_unique<app::frmMain>(*logic, boxes);
        logic->SetViewObserver([this] { window->Refresh(); });
        window->Refresh();
    }
    ~FrmMainTest() override { logic->SetViewObserver({}); }
    template <class W> W* Get(const char* name) {
        W* widget = window->findChild<W*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    FakeMessageBoxes boxes;
    std::unique_ptr<app::frmMain> window;
};

TEST_F(FrmMainTest, FirstActivationCentresOrRestoresTheStoredState) {
    Open();
    window->Form_Activate();
    const QRect area = window->screen()->availableGeometry();
    EXPECT_NEAR(window->frameGeometry().center().x(), area.center().x(), 2);
    EXPECT_TRUE(area.contains(window->frameGeometry())); // the test screen is smaller than the first size
    Open("[General]\r\nRemWinPos=1\r\nWinState=2\r\n");
    window->Form_Activate();
    EXPECT_TRUE(window->isMaximized());
    // A normal window goes where the file says, in twips: 15 to the pixel at 96 dpi.
    Open("[General]\r\nRemWinPos=1\r\nWinState=0\r\nWinTop=1500\r\nWinLeft=3000\r\n");
    ASSERT_EQ(window->logicalDpiY(), 96);
    window->Form_Activate();
    EXPECT_EQ(window->pos(), QPoint(200, 100));
}

// The first size and place on screens of every size; 1280x800 at 150 % leaves about 853x501
// logical pixels beside the panel.
TEST(FirstPlacement, FitsTheFreeAreaThenCentres) {
    const QMargins frame(4, 32, 4, 4);
    const QSize minimum(760, 520), wanted(1000, 660);
    EXPECT_EQ(desktop::FitToScreen(wanted, minimum, {0, 32, 853, 501}, frame),
              (desktop::FirstPlacement{{0, 32}, {845, 465}, {760, 465}}));
    EXPECT_EQ(desktop::FitToScreen(wanted, minimum, {0, 0, 1920, 1040}, frame),
              (desktop::FirstPlacement{{456, 172}, {1000, 660}, minimum}));
    EXPECT_EQ(desktop::FitToScreen(wanted, minimum, {1920, 0, 1280, 1024}, frame),
              (desktop::FirstPlacement{{2056, 164}, {1000, 660}, minimum}));
    EXPECT_EQ(desktop::FitToScreen(wanted, minimum, {0, 0, 640, 480}, frame),
              (desktop::FirstPlacement{{0, 0}, {632, 444}, {632, 444}}));
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
    tallybot::test::WriteBytes(home.File("share/doc/tallybot/README.md"), "# Tallybot\n");
    EXPECT_EQ(desktop::ProgramDocumentation(QString::fromStdString(home.File("bin"))).toStdString(),
              home.File("share/doc/tallybot/README.md"));
}

} // namespace
} // namespace tallybot::guitest
