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

TEST_F(NgircdSession, RegistersJoinsAfterMotdAndReachesJoinedState) {
    Join();
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined}));
    EXPECT_EQ(irc.Pane().front(), "*** Connecting to 127.0.0.1 (" + std::to_string(server.Port()) + ")");
    EXPECT_EQ(irc.CountPane("- Tallybot test server"), 1) << irc.PaneText(); // the MOTD phrase
    EXPECT_TRUE(irc.WaitForPane("*** Tallybot has joined #tally")) << irc.PaneText();
    // The user list came from the names reply: alice holds the operator mark.
    const UserEntry* entry = irc.core.Users().Find("alice");
    ASSERT_NE(entry, nullptr) << irc.PaneText();
    EXPECT_EQ(entry->Mark, "@");
}

TEST_F(NgircdSession, ChannelCommandRaisesUserCommand) {
    Join();
    alice.Say("#tally", "!info x");
    ASSERT_TRUE(irc.WaitForPane("<alice> !info x")) << irc.PaneText();
    alice.Say("#tally", "plain chat");
    ASSERT_TRUE(irc.WaitForPane("<alice> plain chat")) << irc.PaneText();
    // ngircd without ident lookups marks the user name with "~".
    EXPECT_EQ(irc.commands, (std::vector<UserCommandCall>{{"!info x", "alice", "~alice"}}));
}

TEST_F(NgircdSession, AnswersCtcpVersion) {
    Join();
    alice.Say("Tallybot", "\x01VERSION\x01");
    const auto reply = alice.WaitForLine(R"(^:Tallybot!\S+ NOTICE alice :)");
    ASSERT_TRUE(reply) << alice.Transcript();
    EXPECT_EQ(reply->substr(reply->find(" NOTICE")),
              " NOTICE alice :\x01VERSION uscIRC 1.0 - Tallybot IRC control\x01");
    EXPECT_TRUE(irc.WaitForPane("[alice VERSION]")) << irc.PaneText();
}

TEST_F(NgircdSession, DeliversNoticesBothWays) {
    Join();
    irc.core.NotifyUser("alice", "score is 3:1");
    const auto got = alice.WaitForLine(R"(^:Tallybot!\S+ NOTICE alice :)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" NOTICE")), " NOTICE alice :score is 3:1");

    alice.Notice("Tallybot", "thanks");
    EXPECT_TRUE(irc.WaitForPane("-alice- thanks")) << irc.PaneText();
}

TEST_F(NgircdSession, ChannelTextReachesOtherUsers) {
    Join();
    irc.core.SendToChannel("Red 3 : Blue 1");
    const auto got = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" PRIVMSG")), " PRIVMSG #tally :Red 3 : Blue 1");
}

TEST_F(NgircdSession, RejoinsAtOnceAfterKick) {
    Join();
    alice.Send("KICK #tally Tallybot :too many posts");
    EXPECT_TRUE(irc.WaitForPane("*** You were kicked from the channel by alice (too many posts) !")) << irc.PaneText();
    EXPECT_TRUE(irc.WaitForPane("*** Attempting to rejoin #tally...")) << irc.PaneText();
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+@\S+ JOIN :?#tally$)")) << alice.Transcript();
}

TEST_F(NgircdSession, QuitTextTravelsAsOneWord) {
    Join();
    irc.core.Disconnect("good bye");
    EXPECT_EQ(irc.disconnectedEvents, 1);
    const auto quit = alice.WaitForLine(R"(^:Tallybot!\S+ QUIT )");
    ASSERT_TRUE(quit) << alice.Transcript();
    EXPECT_NE(quit->find("good\240bye"), std::string::npos) << *quit;
    // The server closes the link after QUIT; only then does the state return to 0.
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
