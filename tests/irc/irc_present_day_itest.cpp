// The switches for present-day servers against real ones on 127.0.0.1: an ngircd without a MOTD
// file (registration ends with 422) and InspIRCd with its own user name checks (468).

#include "tests/irc/irc_under_test.h"
#include "tests/support/inspircd_server.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/ngircd_server.h"

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using testsupport::InspircdServer;
using testsupport::IrcTestClient;
using testsupport::NgircdServer;

TEST(PresentDayServers, NgircdWithoutMotdIsJoinedOnlyWithJoinAfter422) {
    if (!NgircdServer::Available()) GTEST_SKIP() << "ngircd is not installed";
    NgircdServer::Options noMotd;
    noMotd.motd = "";
    NgircdServer server(noMotd);
    ASSERT_TRUE(server.Start()) << server.Log();
    IrcUnderTest classic, today;
    today.core.Properties().Nick = "Tallybot2";
    today.extras.JoinAfter422 = 1;
    classic.ConnectTo(server.Host(), server.Port());
    today.ConnectTo(server.Host(), server.Port());
    ASSERT_TRUE(today.WaitForStatus(kJoined)) << today.PaneText();
    EXPECT_EQ(today.CountPane("*** Tallybot2 has joined #tally"), 1) << today.PaneText();
    // The classic control saw the same 422 and still waits for a 376.
    ASSERT_TRUE(classic.WaitForPane("MOTD file is missing")) << classic.PaneText();
    EXPECT_EQ(classic.core.ConnectStatus(), kConnectRequested);
    EXPECT_EQ(classic.statuses, (std::vector<int>{kConnectRequested}));
}

TEST(PresentDayServers, InspircdRefusesTheMailAddressAndTheRefusalIsShown) {
    if (!InspircdServer::Available()) GTEST_SKIP() << "inspircd is not installed";
    InspircdServer server;
    ASSERT_TRUE(server.Start()) << server.Log();
    IrcUnderTest refused, accepted;
    refused.extras.ShowErrorNumerics = 1;
    accepted.core.Properties().Nick = "Tallybot2";
    accepted.extras.ShowErrorNumerics = accepted.extras.UserFromIdent = 1;
    refused.ConnectTo(server.Host(), server.Port());
    accepted.ConnectTo(server.Host(), server.Port());
    ASSERT_TRUE(refused.WaitForPane("Your username is not valid")) << refused.PaneText() << server.Log();
    EXPECT_EQ(refused.core.PaneLines().back().Runs.front().Foreground, 255); // ErrorColor
    ASSERT_TRUE(accepted.WaitForStatus(kJoined)) << accepted.PaneText() << server.Log();
    EXPECT_EQ(accepted.CountPane("Your username is not valid"), 0) << accepted.PaneText();
    EXPECT_EQ(refused.core.ConnectStatus(), kConnectRequested);
}

} // namespace
} // namespace tallybot::irc::itest
