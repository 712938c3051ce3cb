#include "irc/irc_session.h"
#include "tests/irc/fake_irc_transport.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testing::FakeClock;
using testing::FakeTransport;

// The core on the session on a recording transport, with the host's events collected.
struct SessionRig {
    FakeTransport sockets;
    FakeClock clock;
    IrcSession session{sockets, clock};
    uscIRC irc{session, clock};
    std::vector<std::string> events;
    IrcExtrasOptions options;

    SessionRig() {
        session.Attach(&irc);
        session.SetOptionsSource([this] { return options; });
        irc.Events().StatusChange = [this] { events.push_back("StatusChange " + std::to_string(irc.ConnectStatus())); };
        irc.Events().Disconnected = [this] { events.push_back("Disconnected"); };
        irc.Properties().Ident = false;
    }
    void Server(const std::string& line) { session.OnServerData(line + "\r\n"); }
    void Join() {
        irc.Connect();
        session.OnServerConnected();
        Server(":srv 001 Corvamo :Welcome");
        Server(":srv 376 Corvamo :End of MOTD");
        Server(":Corvamo!kavik@my.host JOIN :#Zephra");
    }
    void After(std::uint32_t ms) {
        clock.ticks += ms;
        session.Tick();
    }
    bool PaneHas(const std::string& text) const {
        for (const PaneLine& line : irc.PaneLines())
            if (line.Raw == text) return true;
        return false;
    }
};

TEST(IrcSession, ReconnectKeepsTheHostsSessionAndRejoins) {
    SessionRig rig;
    rig.options.AutoReconnect = true;
    rig.Join();
    rig.sockets.serverState = kSockClosed;
    rig.session.OnServerClosed();
    EXPECT_TRUE(rig.PaneHas("*** Reconnecting in 10 seconds"));
    EXPECT_EQ(rig.irc.ConnectStatus(), kNotConnected);
    rig.After(9999);
    EXPECT_EQ(rig.sockets.connects.size(), 1u);
    rig.After(1);
    ASSERT_EQ(rig.sockets.connects.size(), 2u);
    rig.sockets.serverState = kSockConnected;
    rig.session.OnServerConnected();
    rig.Server(":srv 376 Corvamo :End of MOTD");
    EXPECT_EQ(rig.sockets.Last(), "JOIN #Zephra\r\n");
    rig.Server(":Corvamo!kavik@my.host JOIN :#Zephra");
    // State 1 of the new attempt is not announced: the host never saw the session end.
    EXPECT_EQ(rig.events, (std::vector<std::string>{"StatusChange 1", "StatusChange 2", "StatusChange 3",
                                                    "StatusChange 2", "StatusChange 3"}));
}

TEST(IrcSession, OperatorsDisconnectNeverReconnects) {
    SessionRig rig;
    rig.options.AutoReconnect = true;
    rig.Join();
    rig.irc.Disconnect("bye");
    EXPECT_EQ(rig.sockets.Last(), "QUIT bye\r\n");
    rig.sockets.serverState = kSockClosed;
    rig.session.OnServerClosed();
    rig.After(3'600'000);
    EXPECT_EQ(rig.sockets.connects.size(), 1u);
    EXPECT_FALSE(rig.PaneHas("*** Reconnecting in 10 seconds"));
}

TEST(IrcSession, SwitchesOffKeepTheClassicEnd) {
    SessionRig rig;
    rig.Join();
    rig.Server("ERROR :Closing link");
    EXPECT_EQ(rig.events.back(), "Disconnected");
    rig.After(3'600'000);
    EXPECT_EQ(rig.sockets.connects.size(), 1u);
}

TEST(IrcSession, QuietLinkIsPingedThenDropped) {
    SessionRig rig;
    rig.options.AutoReconnect = true;
    rig.Join();
    rig.sockets.sent.clear();
    rig.After(120'000);
    EXPECT_EQ(rig.sockets.sent, std::vector<std::string>{"PING :keepalive\r\n"});
    rig.After(180'000);
    EXPECT_TRUE(rig.PaneHas("[IRC] No data from the server for 300 seconds"));
    EXPECT_EQ(rig.irc.ConnectStatus(), kNotConnected);
    rig.After(10'000);
    EXPECT_EQ(rig.sockets.connects.size(), 2u);
}

TEST(IrcSession, RegistrationWaitsForSaslAndLinesAreEncoded) {
    SessionRig rig;
    rig.options.Sasl = {"PLAIN", "tally", "s3cret"};
    rig.options.Encoding = IrcEncoding::Utf8;
    rig.irc.Connect();
    rig.session.OnServerConnected();
    ASSERT_GE(rig.sockets.sent.size(), 3u);
    EXPECT_EQ(rig.sockets.sent[0], "CAP LS 302\r\n");
    EXPECT_EQ(rig.sockets.sent[1].rfind("USER ", 0), 0u);
    rig.Server(":srv CAP * LS :sasl");
    EXPECT_EQ(rig.sockets.Last(), "CAP REQ :sasl\r\n");
    rig.irc.SendToChannel("J\xF6rg");
    EXPECT_EQ(rig.sockets.Last(), "PRIVMSG #Zephra :J\xC3\xB6rg\r\n");
}

} // namespace
} // namespace tallybot::irc
