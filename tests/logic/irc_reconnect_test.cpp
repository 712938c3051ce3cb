// The connect button and ConnState while the Extras session reconnects: the operator's session
// stays on through the outage, and only the operator's own disconnect ends it.

#include "irc/irc_session.h"
#include "tests/logic/logic_fixture.h"

#include <algorithm>

namespace tallybot::app::test {
namespace {

class ReconnectLogicTest : public LogicTest {
protected:
    ReconnectLogicTest() {
        logic = std::make_unique<MainLogic>(session, clock);
        logic->SetTimers(&timers);
        session.Attach(&logic->Irc());
        session.SetOptionsSource([this] { return irc::ExtrasOptionsFrom(logic->Settings().Extras); });
    }
    ~ReconnectLogicTest() override { session.Attach(nullptr); }

    void Register() {
        session.OnServerConnected();
        session.OnServerData(":irc.test 376 Bot :End of MOTD\r\n");
        session.OnServerData(":Bot!u@h JOIN :#chan\r\n");
    }
    void After(std::uint32_t ms) {
        clock.ticks += ms;
        session.Tick();
    }
    int Joins() const {
        return static_cast<int>(std::count(transport.sent.begin(), transport.sent.end(), "JOIN #chan\r\n"));
    }

    irc::IrcSession session{transport, clock};
};

TEST_F(ReconnectLogicTest, OutageKeepsTheSessionAndTheButtonUntilTheOperatorDisconnects) {
    Start(IrcIni() + "[Extras]\r\nAutoReconnect=1\r\n");
    logic->cmdIRCConnection_Click();
    Register();
    ASSERT_EQ(logic->Settings().ConnState, 1);

    transport.serverState = irc::kSockClosed;
    session.OnServerClosed();
    EXPECT_EQ(logic->Settings().ConnState, 1);
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "Dis&connect");

    After(10'000); // the attempt fails at once
    transport.serverState = irc::kSockError;
    session.OnServerError(10061, "Connection refused");
    EXPECT_EQ(logic->Settings().ConnState, 1);
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "Dis&connect");

    After(20'000); // the next one gets through and rejoins
    transport.serverState = irc::kSockConnected;
    Register();
    EXPECT_EQ(Joins(), 2);
    EXPECT_EQ(logic->Irc().ConnectStatus(), irc::kJoined);
    EXPECT_EQ(logic->Settings().ConnState, 1);

    transport.serverState = irc::kSockClosed;
    session.OnServerClosed();
    logic->cmdIRCConnection_Click(); // the operator gives up while the next attempt waits
    EXPECT_EQ(logic->Settings().ConnState, 0);
    EXPECT_EQ(logic->View().cmdIRCConnectionCaption, "&Connect");
    After(3'600'000);
    EXPECT_EQ(transport.connects.size(), 3u);
}

} // namespace
} // namespace tallybot::app::test
