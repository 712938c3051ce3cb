// DCC SEND offers received through a scripted server, and real transfers from a local sender into a file:
// declined, fresh, overwriting a shorter file, and the resume handshake for a longer one.

#include "tests/irc/irc_under_test.h"
#include "tests/support/dcc_test_sender.h"
#include "tests/support/fake_irc_server.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using testsupport::DccTestSender;
using testsupport::FakeIrcServer;

std::string Content(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 12345;
    for (char& c : bytes) {
        state = state * 1103515245u + 12345u;
        c = static_cast<char>(state >> 16);
    }
    return bytes;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

class DccSession : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(fake.Listen());
        ASSERT_TRUE(sender.Listen());
        irc.questions.savePath = path;
        irc.core.Events().DCCRequest = [this](const std::string& nick, const std::string& file,
                                              const std::string& address, long port, double size) {
            requests.push_back(nick + " " + file + " " + address + " " + std::to_string(port) + " " +
                               std::to_string(static_cast<long long>(size)));
        };
        irc.ConnectTo(fake.Host(), fake.Port());
        ASSERT_TRUE(fake.WaitForClient());
        ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$"));
    }

    void Offer() { fake.WriteLine(":bob!b@peer.example PRIVMSG Tallybot :" + sender.Offer("report.txt")); }

    QTemporaryDir dir;
    std::string path = (std::filesystem::path(dir.path().toStdString()) / "report.txt").string();
    std::string content = Content(100 * 1024 + 7);
    FakeIrcServer fake;
    DccTestSender sender{content};
    IrcUnderTest irc;
    std::vector<std::string> requests;
};

TEST_F(DccSession, DeclinedOfferSendsTheNoticeAndNeverConnects) {
    irc.questions.answers = {false};
    Offer();
    ASSERT_TRUE(fake.WaitForLine("^NOTICE bob :")) << fake.Received().Transcript();
    EXPECT_EQ(fake.Received().Lines().back(),
              "NOTICE bob :Your DCC request has been declined for report.txt (102,407 bytes)");
    EXPECT_EQ(irc.questions.asked, (std::vector<std::string>{"Accept DCC?"}));
    EXPECT_EQ(sender.Connections(), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DccSession, AcceptedOfferReceivesTheWholeFile) {
    irc.questions.answers = {true};
    Offer();
    ASSERT_TRUE(sender.WaitForAck(content.size())) << irc.PaneText();
    ASSERT_TRUE(irc.WaitForPane("*** DCC transfer of report.txt complete (102407 bytes)")) << irc.PaneText();
    EXPECT_EQ(ReadFile(path), content);
    EXPECT_EQ(irc.questions.asked, (std::vector<std::string>{"Accept DCC?", "Save file..."}));
    EXPECT_EQ(requests,
              (std::vector<std::string>{"bob report.txt 127.0.0.1 " + std::to_string(sender.Port()) + " 102407"}));
}

TEST_F(DccSession, ShorterLocalFileIsOverwrittenFromTheStart) {
    WriteFile(path, "stale partial download");
    irc.questions.answers = {true, true};
    Offer();
    ASSERT_TRUE(sender.WaitForAck(content.size())) << irc.PaneText();
    ASSERT_TRUE(irc.WaitForPane("*** DCC transfer of report.txt complete (102407 bytes)")) << irc.PaneText();
    EXPECT_EQ(ReadFile(path), content);
    EXPECT_EQ(irc.questions.asked,
              (std::vector<std::string>{"Accept DCC?", "Save file...", "Overwrite exisiting file?"}));
}

TEST_F(DccSession, LongerLocalFileAsksResumeAndConnectsAfterAccept) {
    // The local file longer than the offer is what leads to the resume question.
    const std::string local = Content(content.size() + 50);
    WriteFile(path, local);
    irc.questions.answers = {true, true};
    Offer();
    const std::string resume = "PRIVMSG bob :\001DCC RESUME report.txt " + std::to_string(sender.Port()) + " " +
                               std::to_string(local.size()) + "\x01";
    ASSERT_TRUE(fake.WaitForLine("^PRIVMSG bob :\001DCC RESUME ")) << fake.Received().Transcript();
    EXPECT_EQ(fake.Received().Lines().back(), resume);
    EXPECT_EQ(irc.questions.asked, (std::vector<std::string>{"Accept DCC?", "Save file...", "Resume transfer?"}));
    EXPECT_EQ(sender.Connections(), 0);

    sender.SetStartPosition(local.size());
    fake.WriteLine(":bob!b@peer.example PRIVMSG Tallybot :" + sender.AcceptLine("report.txt", local.size()));
    ASSERT_TRUE(sender.WaitForConnection()) << irc.PaneText();
    sender.Disconnect();
    ASSERT_TRUE(irc.WaitForPane("*** DCC transfer of report.txt closed at 102457 of 102407 bytes")) << irc.PaneText();
    EXPECT_EQ(ReadFile(path), local); // appended to, never truncated
}

} // namespace
} // namespace tallybot::irc::itest
