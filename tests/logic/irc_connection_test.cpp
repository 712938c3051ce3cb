// The IRC connect button and ConnState as IRC and the game query come and go.
#include "tests/logic/logic_fixture.h"

#include <algorithm>

namespace tallybot::app::test {
namespace {

struct Step {
    const char* action;
    int connState;
    const char* caption;
    bool boxesEnabled;
    bool postMenu;
    bool infoButton;
};

TEST_F(LogicTest, ConnStateCaptionsAndEnabledFlagsFollowBothConnections) {
    Start(IrcIni());
    const Step steps[] = {
        {"connect irc", 1, "Dis&connect", false, true, false}, {"register", 1, "Dis&connect", false, true, false},
        {"start query", 3, "Dis&connect", false, true, true},  {"disconnect irc", 2, "&Connect", true, false, false},
        {"connect irc", 3, "Dis&connect", false, true, true},  {"stop query", 1, "Dis&connect", false, true, false},
        {"disconnect irc", 0, "&Connect", true, false, false},
    };
    for (const Step& step : steps) {
        const std::string action = step.action;
        if (action == "register")
            RegisterIrc();
        else if (action.find("irc") != std::string::npos)
            logic->cmdIRCConnection_Click();
        else
            logic->cmdGamQuery_Click();
        const MainView& v = logic->View();
        SCOPED_TRACE(action);
        EXPECT_EQ(logic->Settings().ConnState, step.connState);
        EXPECT_EQ(v.cmdIRCConnectionCaption, step.caption);
        EXPECT_TRUE(v.cmdIRCConnectionEnabled);
        EXPECT_EQ(v.cmbIRCServer.Enabled, step.boxesEnabled);
        EXPECT_EQ(v.cmbIRCNick.Enabled, step.boxesEnabled);
        EXPECT_EQ(v.mnuStatToIRCEnabled, step.postMenu);
        EXPECT_EQ(v.Query.cmdInfoToIRCEnabled, step.infoButton);
    }
}

TEST_F(LogicTest, ConnectCopiesTheBoxesIntoTheControl) {
    Start("[IRC]\r\n1Server=irc.test\r\n1Port=6667\r\n1Channel=#chan\r\n1Nick=Bot\r\nRealName=Tally Bot\r\n"
          "IdentEmail=tb@x\r\n[Extras]\r\nIdentEnabled=0\r\n");
    logic->SetIrcText(&MainView::cmbIRCChannel, "chan2");
    logic->cmdIRCConnection_Click();
    ASSERT_EQ(transport.connects.size(), 1u);
    EXPECT_EQ(transport.connects[0], (std::pair<std::string, int>{"irc.test", 6667}));
    EXPECT_TRUE(transport.listens.empty());
    EXPECT_EQ(logic->Irc().ChannelName(), "#chan2");
    logic->Irc().OnServerConnected();
    EXPECT_EQ(transport.sent,
              (std::vector<std::string>{"USER tb@x localbox irc.example.net : Tally Bot\r\n", "NICK Bot\r\n"}));
}

TEST_F(LogicTest, JoinPostsTheOnJoinMessageAndArmsIntervalPostsOnlyWithBothConnections) {
    Start(IrcIni() + "[OnJoin]\r\nEnabled=1\r\nMessage=Hello $ic$all\r\n");
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    EXPECT_NE(std::find(transport.sent.begin(), transport.sent.end(), "PRIVMSG #chan :Hello \0032all\r\n"),
              transport.sent.end());
    EXPECT_FALSE(timers.Last(MainTimer::IRCPost)->enabled);
}

TEST_F(LogicTest, OnJoinMessageGoesOutWithTheJoinAndThePerformCommandOnceJoined) {
    std::string ini = IrcIni() + "[OnJoin]\r\nEnabled=1\r\nMessage=Hello\r\n";
    ini.insert(ini.find("\r\n") + 2, "PerformEnable=1\r\nPerformCmd=/msg NickServ hi\r\n");
    Start(ini);
    logic->cmdIRCConnection_Click();
    logic->Irc().OnServerConnected();
    logic->Irc().OnServerData(":irc.test 376 Bot :End of MOTD\r\n"); // state 2: JOIN sent
    EXPECT_EQ(transport.Last(), "PRIVMSG #chan :Hello\r\n");
    logic->Irc().OnServerData(":Bot!u@h JOIN :#chan\r\n"); // state 3: joined
    EXPECT_EQ(transport.Last(), "PRIVMSG NickServ :hi\r\n");
}

// Decided: a connection that fails by itself gives back its share of ConnState at once (the
// classic rule waited for the operator's disconnect), so nothing is posted into a closed socket.
TEST_F(LogicTest, AConnectionThatFailsOnItsOwnGivesBackItsConnState) {
    Start(IrcIni());
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    logic->cmdGamQuery_Click();
    ASSERT_EQ(logic->Settings().ConnState, 3);
    transport.serverState = irc::kSockError;
    logic->Irc().OnServerError(10054, "Connection reset by peer");
    EXPECT_EQ(logic->Settings().ConnState, 2);
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "&Connect");
    EXPECT_TRUE(logic->View().cmbIRCServer.Enabled);
    EXPECT_FALSE(logic->View().mnuStatToIRCEnabled);
    EXPECT_FALSE(logic->View().Query.cmdInfoToIRCEnabled);
    EXPECT_FALSE(timers.Last(MainTimer::IRCPost)->enabled);
    // One click connects again and both connections count.
    transport.serverState = irc::kSockConnected;
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    EXPECT_EQ(logic->Settings().ConnState, 3);
}

TEST_F(LogicTest, DisconnectAfterTheServerClosedRestoresTheButton) {
    Start(IrcIni());
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    logic->Irc().OnServerClosed(); // no event: the button still offers to disconnect
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "Dis&connect");
    logic->cmdIRCConnection_Click();
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "&Connect");
}

} // namespace
} // namespace tallybot::app::test
