#include "fake_irc_transport.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testing::IrcRig;
using Strings = std::vector<std::string>;

TEST(IrcConnection, ConnectAnnouncesListensForIdentAndRequests) {
    IrcRig rig;
    rig.irc.Properties().ServerAddress = "irc.test";
    rig.irc.Properties().ServerPort = 6668;
    rig.irc.Properties().IdentPort = 1113;
    rig.irc.Connect();
    EXPECT_EQ(rig.LastPane(), "*** Connecting to irc.test (6668)");
    EXPECT_EQ(rig.LastColour(), 0x660000);
    ASSERT_EQ(rig.transport.connects.size(), 1u);
    EXPECT_EQ(rig.transport.connects[0], std::make_pair(std::string("irc.test"), 6668));
    EXPECT_EQ(rig.transport.listens, std::vector<int>{1113});
    EXPECT_EQ(rig.irc.ConnectStatus(), 1);
    EXPECT_EQ(rig.events, Strings{"StatusChange 1"});
}

TEST(IrcConnection, RegistrationLinesWithAndWithoutPassword) {
    IrcRig rig;
    rig.irc.OnServerConnected();
    EXPECT_EQ(rig.transport.sent,
              (Strings{"USER tallybot@localhost localbox irc.example.net : KavikIRC\r\n", "NICK Corvamo\r\n"}));
    rig.transport.sent.clear();
    rig.irc.SetServerPassword("sekrit");
    rig.irc.OnServerConnected();
    EXPECT_EQ(rig.transport.sent.front(), "PASS sekrit\r\n");
    EXPECT_EQ(rig.transport.sent.size(), 3u);
}

TEST(IrcConnection, EndOfMotdJoinsAndFullPrefixReachesStateThree) {
    IrcRig rig;
    rig.irc.Connect();
    rig.Line(":srv 422 Corvamo :MOTD File is missing");
    EXPECT_EQ(rig.irc.ConnectStatus(), 1);
    EXPECT_TRUE(rig.transport.sent.empty());
    rig.Line(":srv 376 Corvamo :End of MOTD");
    EXPECT_EQ(rig.transport.sent, Strings{"JOIN #Zephra\r\n"});
    EXPECT_EQ(rig.irc.ConnectStatus(), 2);
    rig.Line(":Corvamo!kavik@my.host JOIN :#Zephra");
    EXPECT_EQ(rig.irc.ConnectStatus(), 3);
    EXPECT_EQ(rig.irc.OwnHost(), "my.host");
    EXPECT_EQ(rig.events, (Strings{"StatusChange 1", "StatusChange 2", "StatusChange 3"}));
}

TEST(IrcConnection, ChannelTypesOnlyJoinAndPart) {
    IrcRig rig;
    rig.irc.Properties().ControlType = 2;
    rig.irc.Connect();
    EXPECT_TRUE(rig.transport.connects.empty());
    EXPECT_EQ(rig.transport.sent, Strings{"JOIN #Zephra\r\n"});
    EXPECT_EQ(rig.irc.ConnectStatus(), 2);
    rig.irc.Disconnect("bye now");
    EXPECT_EQ(rig.transport.Last(), "PART :#Zephra\r\n");
}

TEST(IrcConnection, PingIsAnsweredAndShown) {
    IrcRig rig;
    rig.Line("PING :abc");
    EXPECT_EQ(rig.transport.sent, Strings{"PONG :abc\r\n"});
    EXPECT_EQ(rig.LastPane(), "*** PING? PONG!");
    EXPECT_EQ(rig.LastColour(), static_cast<Colour>(0xFFFF9900));
    rig.irc.Properties().ShowPing = false;
    const auto shown = rig.irc.PaneLines().size();
    rig.Line("PING :def");
    EXPECT_EQ(rig.transport.Last(), "PONG :def\r\n");
    EXPECT_EQ(rig.irc.PaneLines().size(), shown);
}

TEST(IrcConnection, QuitTextTravelsWithoutBlanks) {
    IrcRig rig;
    rig.Join();
    rig.irc.Disconnect("good bye");
    EXPECT_EQ(rig.transport.sent, Strings{"QUIT good\240bye\r\n"});
    EXPECT_EQ(rig.events, Strings{"Disconnected"});
    EXPECT_EQ(rig.irc.ConnectStatus(), 3); // back to 0 only when the socket closes
}

TEST(IrcConnection, DisconnectWhenNotConnectedDoesNothing) {
    IrcRig rig;
    rig.irc.Disconnect("x");
    EXPECT_TRUE(rig.transport.sent.empty());
    EXPECT_TRUE(rig.events.empty());
}

TEST(IrcConnection, PeerCloseWritesDisconnectedWithoutEvent) {
    IrcRig rig;
    rig.Join();
    rig.irc.OnServerClosed();
    EXPECT_EQ(rig.LastPane(), "*** Disconnected");
    EXPECT_EQ(rig.irc.ConnectStatus(), 0);
    EXPECT_EQ(rig.transport.serverCloses, 1);
    EXPECT_TRUE(rig.events.empty());
}

TEST(IrcConnection, SocketErrorIsWrittenAndDisconnects) {
    IrcRig rig;
    rig.Join();
    rig.transport.serverState = kSockError;
    rig.irc.OnServerError(10061, "Connection is forcefully rejected");
    EXPECT_EQ(rig.LastPane(), "[IRC] SERVER Error #10061: Connection is forcefully rejected");
    EXPECT_EQ(rig.LastColour(), 255);
    EXPECT_TRUE(rig.transport.sent.empty());
    EXPECT_EQ(rig.events, Strings{"Disconnected"});
}

TEST(IrcConnection, ServerErrorLineDisconnectsWithQuitMessage) {
    IrcRig rig;
    rig.Join();
    rig.Line("ERROR :Closing Link: flood");
    EXPECT_EQ(rig.LastPane(), "[IRC] Closing Link: flood");
    EXPECT_EQ(rig.transport.sent, Strings{"QUIT uscIRC\2401.0\240-\240Tallybot\r\n"});
}

TEST(IrcConnection, KickOfOurselvesRejoinsAtOnce) {
    IrcRig rig;
    rig.Join();
    rig.Line(":op!o@h KICK #Zephra Corvamo :behave");
    const auto& pane = rig.irc.PaneLines();
    ASSERT_GE(pane.size(), 2u);
    EXPECT_EQ(pane[pane.size() - 2].Raw, "*** You were kicked from the channel by op (behave) !");
    EXPECT_EQ(pane.back().Raw, "*** Attempting to rejoin #Zephra...");
    EXPECT_EQ(rig.transport.sent, Strings{"JOIN :#Zephra\r\n"});
    EXPECT_TRUE(rig.irc.Users().Entries().empty());
    EXPECT_EQ(rig.events, Strings{"UserLeave op 2"});
}

TEST(IrcConnection, SendingNeedsAnOpenSocketAndChannelTextAControlType) {
    IrcRig rig;
    rig.irc.SendToChannel("hello\r\n");
    rig.irc.NotifyUser("a", "hi");
    EXPECT_EQ(rig.transport.sent, (Strings{"PRIVMSG #Zephra :hello\r\n", "NOTICE a :hi\r\n"}));
    rig.irc.Properties().ControlType = 0;
    rig.irc.SendToChannel("x");
    rig.transport.serverState = kSockClosed;
    rig.irc.SendIRCData("PING x");
    EXPECT_EQ(rig.transport.sent.size(), 2u);
}

TEST(IrcConnection, HostileChannelTextCannotInjectACommand) {
    IrcRig rig;
    rig.irc.SendToChannel("score\r\nQUIT :owned");
    EXPECT_EQ(rig.transport.sent, Strings{"PRIVMSG #Zephra :score  QUIT :owned\r\n"});
}

TEST(IrcConnection, IdentAnswersTheFirstRequestOnly) {
    IrcRig rig;
    rig.irc.Connect();
    rig.irc.OnIdentConnectionRequest(42, 113);
    ASSERT_EQ(rig.transport.identAnswers.size(), 1u);
    EXPECT_EQ(rig.transport.identAnswers[0].second, "113, 42:USERID:WIN32:kavik\r\n");
    rig.transport.identState = kSockListening;
    rig.irc.OnIdentConnectionRequest(43, 113);
    EXPECT_EQ(rig.transport.identAnswers.size(), 1u);
}

TEST(IrcConnection, IdentListenFailureIsOneLineAndNothingElse) {
    IrcRig rig;
    rig.irc.Connect();
    rig.events.clear();
    const auto sent = rig.transport.sent.size();
    rig.irc.OnIdentError(10013, "Permission denied");
    EXPECT_EQ(rig.LastPane(), "[IRC] IDENT Error #10013: Permission denied");
    EXPECT_EQ(rig.irc.ConnectStatus(), 1);
    EXPECT_EQ(rig.transport.sent.size(), sent);
    EXPECT_TRUE(rig.events.empty());
}

TEST(IrcConnection, ArrivalHandsLinesThenOneEmptyLine) {
    IrcRig rig;
    rig.irc.OnServerData("PING :a\r\nPING :b\r\nPING :c");
    EXPECT_EQ(rig.transport.sent, (Strings{"PONG :a\r\n", "PONG :b\r\n"}));
    rig.irc.OnServerData("\r\n");
    EXPECT_EQ(rig.transport.Last(), "PONG :c\r\n");
}

TEST(IrcConnection, LineTableOverflowIsReported) {
    IrcRig rig;
    std::string burst;
    for (int i = 0; i < 400; ++i)
        burst += "PING :x\r\n";
    rig.irc.OnServerData(burst);
    EXPECT_EQ(rig.LastPane(), "[IRC] SERVER Error #9: Subscript out of range");
    EXPECT_TRUE(rig.transport.sent.empty());
}

TEST(IrcConnection, AddressHelpers) {
    EXPECT_EQ(uscIRC::Dotted2LongIP("192.168.1.1"), 3232235777.0);
    EXPECT_EQ(uscIRC::LongIP2Dotted(3232235777.0), "192.168.1.1");
    EXPECT_EQ(uscIRC::LongIP2Dotted(uscIRC::Dotted2LongIP("255.255.255.255")), "255.255.255.255");
    IrcRig rig;
    EXPECT_EQ(rig.irc.GetIPAddress(), "192.168.1.5");
    rig.transport.hostName.clear();
    rig.transport.hostError = 10093;
    EXPECT_EQ(rig.irc.GetIPAddress(),
              "Windows Sockets error 10093 has occurred. Unable to successfully get Host Name.\r\n");
}

TEST(IrcConnection, ChannelNameAssignment) {
    IrcRig rig;
    rig.irc.SetChannelName("quake");
    EXPECT_EQ(rig.irc.ChannelName(), "#quake");
    rig.irc.SetChannelName("#ctf");
    EXPECT_EQ(rig.irc.ChannelName(), "#ctf");
    rig.irc.SetChannelName("x");
    EXPECT_EQ(rig.irc.ChannelName(), "#Zephra");
}

} // namespace
} // namespace tallybot::irc
