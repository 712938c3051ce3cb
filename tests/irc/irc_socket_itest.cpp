// The Qt sockets alone, with the core replaced by a recorder: what reaches IrcSocketEvents, in which
// pieces and in which order.

#include "irc/qt/irc_socket.h"
#include "tests/support/fake_irc_server.h"
#include "tests/support/qt_wait.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testsupport::FakeIrcServer;
using testsupport::ProcessPendingEvents;
using testsupport::WaitUntil;

struct Recorder final : IrcSocketEvents {
    std::vector<std::string> events; // "connected", "data", "closed", "error <n>"
    std::vector<std::string> chunks;
    std::string data;

    void OnServerConnected() override { events.push_back("connected"); }
    void OnServerData(std::string_view bytes) override {
        events.push_back("data");
        chunks.emplace_back(bytes);
        data.append(bytes);
    }
    void OnServerClosed() override { events.push_back("closed"); }
    void OnServerError(int n, const std::string&) override { events.push_back("error " + std::to_string(n)); }
    void OnIdentConnectionRequest(long, int) override {}
    void OnIdentData(std::string_view) override {}
    void OnIdentError(int, const std::string&) override {}
    void OnDccConnected() override {}
    void OnDccData(std::string_view) override {}
    void OnDccClosed() override {}
    void OnDccError(int, const std::string&) override {}
};

class SocketOnly : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(fake.Listen());
        sockets.ServerConnect(fake.Host(), fake.Port());
        ASSERT_TRUE(fake.WaitForClient());
        ASSERT_TRUE(WaitUntil([&] { return sockets.ServerState() == kSockConnected; }));
    }

    FakeIrcServer fake;
    Recorder recorder;
    IrcSocket sockets{&recorder};
};

TEST_F(SocketOnly, EveryByteValuePassesUnchangedInBoundedChunks) {
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += static_cast<char>(i % 256);
    fake.Write(bytes);
    ASSERT_TRUE(WaitUntil([&] { return recorder.data.size() >= bytes.size(); }));
    EXPECT_EQ(recorder.data, bytes);
    for (const std::string& chunk : recorder.chunks)
        EXPECT_LE(chunk.size(), 4096u);
}

TEST_F(SocketOnly, DataBeforeAPeerCloseArrivesFirstAndTheCloseOnce) {
    fake.Write(":irc.fake NOTICE * :last words\r\n");
    fake.CloseClient();
    ASSERT_TRUE(WaitUntil([&] { return !recorder.events.empty() && recorder.events.back() == "closed"; }));
    EXPECT_EQ(recorder.events, (std::vector<std::string>{"connected", "data", "closed"}));
    EXPECT_EQ(recorder.data, ":irc.fake NOTICE * :last words\r\n");
}

TEST_F(SocketOnly, OwnCloseSendsWhatWasQueuedAndReportsNothing) {
    sockets.ServerSend("QUIT :bye\r\n");
    sockets.ServerClose();
    EXPECT_EQ(sockets.ServerState(), kSockClosed);
    ASSERT_TRUE(fake.WaitForLine("^QUIT :bye$"));
    ASSERT_TRUE(fake.WaitForClientGone());
    ProcessPendingEvents();
    EXPECT_EQ(recorder.events, (std::vector<std::string>{"connected"}));
    sockets.ServerSend("PRIVMSG #lost :nobody hears this\r\n"); // silently dropped while closed
}

TEST(SocketErrors, BadPortIsReportedLaterAsAnError) {
    Recorder recorder;
    IrcSocket sockets{&recorder};
    sockets.ServerConnect("127.0.0.1", 70000);
    EXPECT_TRUE(recorder.events.empty()); // never from inside the connect call
    ASSERT_TRUE(WaitUntil([&] { return !recorder.events.empty(); }));
    EXPECT_EQ(recorder.events, (std::vector<std::string>{"error 10049"}));
    EXPECT_EQ(sockets.ServerState(), kSockError);
    sockets.ServerClose();
    EXPECT_EQ(sockets.ServerState(), kSockClosed);
}

} // namespace
} // namespace tallybot::irc
