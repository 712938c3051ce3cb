// The IRC control against a scripted server on 127.0.0.1, for what a real server does not send: lines
// split across arrivals, 422 instead of 376, ERROR lines; and the ident responder and socket errors.

#include "tests/irc/irc_under_test.h"
#include "tests/support/fake_irc_server.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/ngircd_server.h"

#include <QHostInfo>
#include <QTcpServer>

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using testsupport::FakeIrcServer;
using testsupport::FreeLoopbackPort;
using testsupport::IrcTestClient;
using testsupport::WaitUntil;

class FakeServerSession : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(fake.Listen()); }

    void Connect(const std::string& host = "127.0.0.1") {
        irc.ConnectTo(host, fake.Port());
        ASSERT_TRUE(fake.WaitForClient());
        ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$")) << fake.Received().Transcript();
    }

    // A PING/PONG round trip: everything written before it has been handled once the PONG is back.
    void Barrier(const std::string& token) {
        fake.WriteLine("PING :" + token);
        ASSERT_TRUE(fake.WaitForLine("^PONG :" + token + "$")) << fake.Received().Transcript();
    }

    FakeIrcServer fake;
    IrcUnderTest irc;
};

struct RegistrationCase {
    std::string name;
    std::string host; // as the operator typed it; a name goes through Qt's lookup
    std::string password;
    std::vector<std::string> expected; // with %h for this machine's host name
    int userFromIdent = 0;             // [Extras] UserFromIdent
};

class Registration : public FakeServerSession, public ::testing::WithParamInterface<RegistrationCase> {};

TEST_P(Registration, SendsPassUserNickInThisShape) {
    irc.core.SetServerPassword(GetParam().password);
    irc.extras.UserFromIdent = GetParam().userFromIdent;
    Connect(GetParam().host);
    const std::string host = QHostInfo::localHostName().toStdString();
    std::vector<std::string> expected;
    for (std::string line : GetParam().expected) {
        if (const auto at = line.find("%h"); at != std::string::npos) line.replace(at, 2, host);
        expected.push_back(line);
    }
    EXPECT_EQ(fake.Received().Lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, Registration,
    ::testing::Values(
        RegistrationCase{
            "NoPassword", "127.0.0.1", "", {"USER tallybot@localhost %h 127.0.0.1 : KavikIRC", "NICK Tallybot"}},
        RegistrationCase{"WithPassword",
                         "127.0.0.1",
                         "s3cret",
                         {"PASS s3cret", "USER tallybot@localhost %h 127.0.0.1 : KavikIRC", "NICK Tallybot"}},
        RegistrationCase{
            "HostName", "localhost", "", {"USER tallybot@localhost %h localhost : KavikIRC", "NICK Tallybot"}},
        // UserFromIdent: the part before "@", a user name every server accepts.
        RegistrationCase{
            "UserFromIdent", "127.0.0.1", "", {"USER tallybot %h 127.0.0.1 : KavikIRC", "NICK Tallybot"}, 1}),
    [](const ::testing::TestParamInfo<RegistrationCase>& info) { return info.param.name; });

TEST_F(FakeServerSession, LineSplitAcrossArrivalsIsHandledOnceWhole) {
    Connect();
    fake.Write(":irc.fake 001 Tallybot :Wel");
    ASSERT_TRUE(WaitUntil([&] { return irc.counter.serverArrivals == 1; }));
    fake.Write("come home\r\n:irc.fake 002 Tallybot :Your host\r\n");
    ASSERT_TRUE(irc.WaitForPane("Your host")) << irc.PaneText();
    EXPECT_EQ(irc.counter.serverArrivals, 2);
    EXPECT_EQ(irc.CountPane("Welcome home"), 1) << irc.PaneText();
    EXPECT_EQ(irc.CountPane("Wel"), 0) << irc.PaneText();
}

TEST_F(FakeServerSession, BigArrivalsComeInChunksAndStillFrameEveryLine) {
    Connect();
    std::string burst;
    for (int i = 0; i < 300; ++i)
        burst += ":irc.fake 372 Tallybot :- motd line " + std::to_string(i) + " of the burst\r\n";
    ASSERT_GT(burst.size(), 3 * 4096u);
    fake.Write(burst);
    ASSERT_TRUE(irc.WaitForPane("- motd line 299 of the burst")) << irc.PaneText();
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(irc.CountPane("- motd line " + std::to_string(i) + " of the burst"), 1) << i;
}

TEST_F(FakeServerSession, EndOfMotdJoinsButNoMotdDoesNot) {
    Connect();
    fake.WriteLine(":irc.fake 001 Tallybot :Welcome");
    fake.WriteLine(":irc.fake 422 Tallybot :MOTD File is missing");
    Barrier("after422");
    EXPECT_FALSE(fake.Received().Pending("^JOIN")) << fake.Received().Transcript();
    EXPECT_EQ(irc.core.ConnectStatus(), kConnectRequested);

    fake.WriteLine(":irc.fake 376 Tallybot :End of MOTD command");
    ASSERT_TRUE(fake.WaitForLine("^JOIN #tally$")) << fake.Received().Transcript();
    EXPECT_TRUE(irc.WaitForStatus(kJoinSent));
    fake.WriteLine(":Tallybot!tb@host.example JOIN :#tally");
    EXPECT_TRUE(irc.WaitForStatus(kJoined));
    EXPECT_EQ(irc.core.OwnHost(), "host.example");
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined}));
}

// A new home's switches against a network of today: the nick is taken before 001, there is no
// MOTD, and hosts are IPv6 addresses.
TEST_F(FakeServerSession, TakenNickNoMotdAndIpv6HostsWithTodaysSwitches) {
    base::ExtrasSettings& x = irc.extras; // a new home's switches
    x.UserFromIdent = x.ShowErrorNumerics = x.JoinAfter422 = x.TrailingAfterPrefix = x.NickFrom001 = 1;
    Connect();
    fake.WriteLine(":irc.fake 433 * Tallybot :Nickname is already in use");
    ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot_$")) << fake.Received().Transcript();
    fake.WriteLine(":irc.fake 001 Tallybot_ :Welcome Tallybot_!tb@2001:db8::1");
    fake.WriteLine(":irc.fake 422 Tallybot_ :MOTD File is missing");
    ASSERT_TRUE(fake.WaitForLine("^JOIN #tally$")) << fake.Received().Transcript();
    fake.WriteLine(":Tallybot_!tb@2001:db8::1 JOIN :#tally");
    fake.WriteLine(":bob!~b@2001:db8::7 PRIVMSG #tally :!info");
    Barrier("afterInfo");
    EXPECT_EQ(irc.core.Nick(), "Tallybot_");
    EXPECT_EQ(irc.core.OwnHost(), "2001:db8::1");
    EXPECT_EQ(irc.commands, (std::vector<UserCommandCall>{{"!info", "bob", "~b"}}));
    EXPECT_EQ(irc.Pane(), (std::vector<std::string>{"*** Connecting to 127.0.0.1 (" + std::to_string(fake.Port()) + ")",
                                                    "Nickname is already in use", "Welcome Tallybot_!tb@2001:db8::1",
                                                    "MOTD File is missing", "*** Tallybot_ has joined #tally",
                                                    "<bob> !info", "*** PING? PONG!"}));
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined}));
}

TEST_F(FakeServerSession, ErrorLineIsShownAndQuitsThenCloseResetsState) {
    Connect();
    fake.WriteLine("ERROR :Closing Link: 127.0.0.1 (Bad password)");
    ASSERT_TRUE(fake.WaitForLine("^QUIT ")) << fake.Received().Transcript();
    EXPECT_EQ(fake.Received().Lines().back(), "QUIT uscIRC\2401.0\240-\240Tallybot");
    EXPECT_EQ(irc.CountPane("[IRC] Closing Link: 127.0.0.1 (Bad password)"), 1) << irc.PaneText();
    EXPECT_EQ(irc.disconnectedEvents, 1);

    fake.CloseClient();
    ASSERT_TRUE(irc.WaitForStatus(kNotConnected)) << irc.PaneText();
    EXPECT_EQ(irc.Pane().back(), "*** Disconnected");
    EXPECT_EQ(irc.Socket().ServerState(), kSockClosed);
}

TEST_F(FakeServerSession, RefusedConnectionIsAServerError) {
    const std::uint16_t closedPort = FreeLoopbackPort();
    irc.ConnectTo("127.0.0.1", closedPort);
    ASSERT_TRUE(irc.WaitForPaneMatch(R"(^\[IRC\] SERVER Error #10061: )")) << irc.PaneText();
    EXPECT_EQ(irc.Socket().ServerState(), kSockError);
    EXPECT_EQ(irc.disconnectedEvents, 1);
}

TEST_F(FakeServerSession, IdentAnswersTheFirstRequestOnly) {
    const std::uint16_t identPort = FreeLoopbackPort();
    irc.core.Properties().Ident = true;
    irc.core.Properties().IdentPort = identPort;
    Connect();
    ASSERT_EQ(irc.Socket().IdentState(), kSockListening);

    IrcTestClient asker("ident");
    ASSERT_TRUE(asker.Connect("127.0.0.1", identPort));
    asker.Send(std::to_string(fake.Port()) + ", 50000");
    const auto reply = asker.WaitForLine(".");
    ASSERT_TRUE(reply);
    EXPECT_TRUE(QRegularExpression(QString("^%1, \\d+:USERID:WIN32:kavik$").arg(identPort))
                    .match(QString::fromStdString(*reply))
                    .hasMatch())
        << *reply;
    EXPECT_TRUE(asker.WaitForClose());
    EXPECT_EQ(irc.Socket().IdentState(), kSockClosed);

    IrcTestClient late("late");
    EXPECT_FALSE(late.Connect("127.0.0.1", identPort));
}

TEST_F(FakeServerSession, IdentPortTakenIsShownAndRegistrationGoesOn) {
    QTcpServer squatter;
    ASSERT_TRUE(squatter.listen(QHostAddress::Any, 0));
    irc.core.Properties().Ident = true;
    irc.core.Properties().IdentPort = squatter.serverPort();
    Connect(); // NICK arrived: the server connection did not suffer
    EXPECT_EQ(irc.CountPane("[IRC] IDENT Error #10048: The bound address is already in use"), 1) << irc.PaneText();
    EXPECT_EQ(irc.Socket().IdentState(), kSockError);
}

} // namespace
} // namespace tallybot::irc::itest
