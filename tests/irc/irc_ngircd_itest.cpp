// The IRC control against a real ngircd on 127.0.0.1: registration, the automatic JOIN, channel text,
// CTCP, notices, a kick with rejoin and the server going away, seen from a second raw client.

#include "tests/irc/irc_under_test.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/ngircd_server.h"

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using testsupport::IrcTestClient;
using testsupport::NgircdServer;

class NgircdSession : public ::testing::Test {
protected:
    void SetUp() override {
        if (!NgircdServer::Available()) GTEST_SKIP() << "ngircd is not installed";
        ASSERT_TRUE(server.Start()) << server.Log();
        // alice joins first, so she is the channel operator who can kick.
        ASSERT_TRUE(alice.Connect(server.Host(), server.Port())) << server.Log();
        ASSERT_TRUE(alice.Register()) << alice.Transcript();
        ASSERT_TRUE(alice.Join("#tally")) << alice.Transcript();
    }

    // Connects the control and waits until the server echoed its JOIN.
    void Join() {
        irc.ConnectTo(server.Host(), server.Port());
        ASSERT_TRUE(irc.WaitForStatus(kJoined)) << irc.PaneText();
        ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+@\S+ JOIN :?#tally$)")) << alice.Transcript();
    }

    NgircdServer server;
    IrcTestClient alice{"alice"};
    IrcUnderTest irc;
};

// One session against the real server, from registration to QUIT: what each step sends and shows.
TEST_F(NgircdSession, OneSessionFromJoinToQuit) {
    Join();
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined}));
    EXPECT_EQ(irc.Pane().front(), "*** Connecting to 127.0.0.1 (" + std::to_string(server.Port()) + ")");
    EXPECT_EQ(irc.CountPane("- Tallybot test server"), 1) << irc.PaneText(); // the MOTD phrase
    EXPECT_TRUE(irc.WaitForPane("*** Tallybot has joined #tally")) << irc.PaneText();
    // The user list came from the names reply: alice holds the operator mark.
    const UserEntry* entry = irc.core.Users().Find("alice");
    ASSERT_NE(entry, nullptr) << irc.PaneText();
    EXPECT_EQ(entry->Mark, "@");

    // A channel command raises UserCommand; ngircd without ident lookups marks the user with "~".
    alice.Say("#tally", "!info x");
    alice.Say("#tally", "plain chat");
    ASSERT_TRUE(irc.WaitForPane("<alice> plain chat")) << irc.PaneText();
    EXPECT_EQ(irc.commands, (std::vector<UserCommandCall>{{"!info x", "alice", "~alice"}}));

    // CTCP VERSION answered; notices and channel text both ways.
    alice.Say("Tallybot", "\x01VERSION\x01");
    auto got = alice.WaitForLine(R"(^:Tallybot!\S+ NOTICE alice :\x01)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" NOTICE")), " NOTICE alice :\x01VERSION uscIRC 1.0 - Tallybot IRC control\x01");
    irc.core.NotifyUser("alice", "score is 3:1");
    got = alice.WaitForLine(R"(^:Tallybot!\S+ NOTICE alice :score)");
    ASSERT_TRUE(got) << alice.Transcript();
    alice.Notice("Tallybot", "thanks");
    EXPECT_TRUE(irc.WaitForPane("-alice- thanks")) << irc.PaneText();
    irc.core.SendToChannel("Red 3 : Blue 1");
    got = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" PRIVMSG")), " PRIVMSG #tally :Red 3 : Blue 1");

    // Kicked, it rejoins at once.
    alice.Send("KICK #tally Tallybot :too many posts");
    EXPECT_TRUE(irc.WaitForPane("*** Attempting to rejoin #tally...")) << irc.PaneText();
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+@\S+ JOIN :?#tally$)")) << alice.Transcript();

    // The quit text travels as one word; the state returns to 0 only when the server closes.
    irc.core.Disconnect("good bye");
    EXPECT_EQ(irc.disconnectedEvents, 1);
    const auto quit = alice.WaitForLine(R"(^:Tallybot!\S+ QUIT )");
    ASSERT_TRUE(quit) << alice.Transcript();
    EXPECT_NE(quit->find("good\240bye"), std::string::npos) << *quit;
    EXPECT_TRUE(irc.WaitForStatus(kNotConnected)) << irc.PaneText();
    EXPECT_EQ(irc.CountPane("*** Disconnected"), 1) << irc.PaneText();
}

TEST_F(NgircdSession, ServerShutdownEndsTheSession) {
    Join();
    server.Stop();
    ASSERT_TRUE(irc.WaitForStatus(kNotConnected)) << irc.PaneText();
    EXPECT_EQ(irc.CountPane("*** Disconnected"), 1) << irc.PaneText();
    EXPECT_EQ(irc.core.Properties().Nick, "Tallybot");
    // Nothing can be sent any more, and trying is silent.
    irc.core.SendToChannel("lost");
    EXPECT_EQ(irc.Socket().ServerState(), kSockClosed);
}

} // namespace
} // namespace tallybot::irc::itest
