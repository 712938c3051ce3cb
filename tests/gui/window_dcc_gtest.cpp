// DCC offers from a real peer on 127.0.0.1, through the objects the window module builds: the
// operator's questions in message boxes, the save dialog, the file written where it was chosen, the
// resume of a longer file and the notice of a declined offer.
#include "app/logic/main_logic.h"
#include "gui/frm_main.h"
#include "gui/window_program.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/support/irc_peers.h"
#include "tests/support/temp_folder.h"

#include <QStatusBar>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

using testsupport::DccTestSender;
using testsupport::FakeIrcServer;

class WindowDcc : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(fake.Listen());
        ASSERT_TRUE(sender.Listen());
        test::WriteBytes(home.File("Tallybot.ini"),
                         "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" + std::to_string(fake.Port()) +
                             "\r\n1Channel=#test\r\n1Nick=Tallybot\r\n"
                             "[Extras]\r\nIdentEnabled=0\r\n");
    }
    app::StartupOptions Options() const {
        app::StartupOptions options;
        options.home = home.Slash();
        return options;
    }
    void ConnectAndOffer(app::MainLogic& logic) {
        logic.cmdIRCConnection_Click();
        ASSERT_TRUE(fake.WaitForClient());
        ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$"));
        fake.WriteLine(":bob!b@peer.example PRIVMSG Tallybot :" + sender.Offer("../report.txt"));
    }
    std::string Saved() const { return downloads.File("report.txt"); }

    test::TempFolder home;
    test::TempFolder downloads;
    FakeIrcServer fake;
    std::string content = std::string(70000, 'x') + "end";
    DccTestSender sender{content};
    FakeMessageBoxes boxes;
    app::WindowProgram program{boxes, QString::fromStdString(downloads.Slash())};
};

const char* const kAccept = "Accept DCC?|Incoming DCC file request from bob! Do you want to accept?";

TEST_F(WindowDcc, AcceptedOfferIsSavedInTheChosenFolder) {
    boxes.yesNo = {true};
    boxes.savePaths = {QString::fromStdString(Saved())};
    program.Start(Options());
    ConnectAndOffer(program.Runtime().Logic());
    ASSERT_TRUE(sender.WaitForAck(content.size()));
    ASSERT_TRUE(testsupport::WaitUntil([&] { return test::ReadBytes(Saved()) == content; }));
    // The offered name arrives as a plain base name in the folder of the dialog.
    EXPECT_EQ(boxes.questions, (std::vector<std::string>{kAccept, "Save file...|" + Saved()}));
    EXPECT_EQ(program.Window().statusBar()->currentMessage().toStdString(), "Received report.txt (70,003 bytes)");
}

TEST_F(WindowDcc, LongerLocalFileIsResumed) {
    test::WriteBytes(Saved(), content + "more");
    boxes.yesNo = {true, true};
    boxes.savePaths = {QString::fromStdString(Saved())};
    program.Start(Options());
    ConnectAndOffer(program.Runtime().Logic());
    ASSERT_TRUE(fake.WaitForLine("^PRIVMSG bob :\001DCC RESUME "));
    EXPECT_EQ(fake.Received().Lines().back(),
              "PRIVMSG bob :\001DCC RESUME ../report.txt " + std::to_string(sender.Port()) + " 70007\001");
    EXPECT_EQ(boxes.questions.back(), "Resume transfer?|Do you want to resume receiving this file?");
    sender.SetStartPosition(content.size() + 4);
    fake.WriteLine(":bob!b@peer.example PRIVMSG Tallybot :" + sender.AcceptLine("../report.txt", content.size() + 4));
    EXPECT_TRUE(sender.WaitForConnection());
}

TEST_F(WindowDcc, DeclinedOfferSendsTheNotice) {
    program.Start(Options());
    ConnectAndOffer(program.Runtime().Logic());
    ASSERT_TRUE(fake.WaitForLine("^NOTICE bob :"));
    EXPECT_EQ(fake.Received().Lines().back(),
              "NOTICE bob :Your DCC request has been declined for ../report.txt (70,003 bytes)");
    EXPECT_EQ(boxes.questions, (std::vector<std::string>{kAccept}));
    EXPECT_EQ(sender.Connections(), 0);
}

TEST_F(WindowDcc, WithoutAWindowEveryOfferIsDeclinedUnasked) {
    app::AppRuntime headless; // as the headless runner builds it
    headless.Start(Options());
    ConnectAndOffer(headless.Logic());
    ASSERT_TRUE(fake.WaitForLine("^NOTICE bob :Your DCC request has been declined for "));
    EXPECT_TRUE(boxes.questions.empty());
    EXPECT_EQ(sender.Connections(), 0);
}

} // namespace
} // namespace tallybot::guitest
