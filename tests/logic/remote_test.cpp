// HandleRemote: the four commands, the field access trap and the two deliberate asymmetries.
#include "tests/logic/logic_fixture.h"

namespace tallybot::app::test {
namespace {

TEST_F(LogicTest, DisIrcWhileNotConnectedDoesNothing) {
    Start(IrcIni());
    logic->HandleRemote("DisIRC");
    EXPECT_TRUE(transport.sent.empty());
    EXPECT_EQ(logic->Settings().ConnState, 0);
}

TEST_F(LogicTest, ConIrcWithFieldsWhileConnectedReconnectsToTheNewServer) {
    Start(IrcIni());
    logic->cmdIRCConnection_Click();
    RegisterIrc();
    logic->HandleRemote("ConIRC:irc2.test:6668:#two:Bot2");
    EXPECT_EQ(transport.Last().rfind("QUIT ", 0), 0u);
    ASSERT_EQ(transport.connects.size(), 2u);
    EXPECT_EQ(transport.connects[1], (std::pair<std::string, int>{"irc2.test", 6668}));
    EXPECT_EQ(logic->Irc().Nick(), "Bot2");
    EXPECT_EQ(logic->View().cmbIRCChannel.Text, "#two");
    EXPECT_EQ(logic->Settings().ConnState, 1);
}

TEST_F(LogicTest, ConIrcAloneConnectsWithTheBoxesAsTheyAre) {
    Start(IrcIni());
    logic->HandleRemote("ConIRC");
    ASSERT_EQ(transport.connects.size(), 1u);
    EXPECT_EQ(transport.connects[0].first, "irc.test");
}

TEST_F(LogicTest, ConIrcWithTooFewFieldsIsTrappedAndDoesNotConnect) {
    Start(IrcIni());
    logic->HandleRemote("ConIRC:irc2.test:6668");
    EXPECT_TRUE(transport.connects.empty());
    EXPECT_EQ(logic->Log()->ErrorCount(), 1);
    EXPECT_NE(logic->Log()->LogText().find("frmMain;HandleRemote;"), std::string::npos);
}

TEST_F(LogicTest, ConGamFieldsAreIgnoredForAnInstanceStartedWithoutCommandLine) {
    Start(IrcIni());
    logic->cmdGamQuery_Click();
    logic->HandleRemote("ConGam:10.0.0.1:27961");
    EXPECT_EQ(logic->View().Query.cmbGamServerText, "127.0.0.1:27960");
    EXPECT_EQ(logic->Settings().ConnState, 2);
}

TEST_F(LogicTest, ConGamFieldsApplyWhenTheInstanceHadALongCommandLine) {
    Start(IrcIni(), "DisGam:x");
    logic->HandleRemote("ConGam:10.0.0.1:27961");
    EXPECT_EQ(logic->View().Query.cmbGamServerText, "10.0.0.1:27961");
    EXPECT_EQ(logic->Settings().ConnState, 2);
}

TEST_F(LogicTest, ConGamLengthTestReadsTheCommandLineNotTheMessage) {
    Start(IrcIni(), "ConGam:1.2.3.4:5");
    logic->cmdGamQuery_Click();
    logic->HandleRemote("ConGam"); // no fields to read: stopped, then trapped
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_EQ(logic->Log()->ErrorCount(), 1);
}

TEST_F(LogicTest, DisGamStopsOnlyARunningQueryAndUnknownWordsDoNothing) {
    Start(IrcIni());
    logic->HandleRemote("DisGam");
    EXPECT_EQ(logic->Settings().ConnState, 0);
    logic->cmdGamQuery_Click();
    logic->HandleRemote("disgam");
    logic->HandleRemote("Hello!");
    EXPECT_EQ(logic->Settings().ConnState, 2);
    logic->HandleRemote("DisGam:whatever");
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_EQ(logic->View().Query.lblQueryStatusCaption, "OFFLINE");
}

} // namespace
} // namespace tallybot::app::test
