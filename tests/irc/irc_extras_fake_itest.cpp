// The "Extras" additions against a scripted server, for what ngircd cannot do: SASL PLAIN, and a
// CTCP flood that must be answered at most five times.

#include "tests/irc/irc_under_test.h"
#include "tests/support/fake_irc_server.h"

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using namespace std::chrono_literals;
using testsupport::FakeIrcServer;

class ExtrasFake : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(fake.Listen()); }

    // Ends the registration once the client sent its NICK (already seen when SASL ran first).
    void Register() {
        fake.WriteLine(":irc.fake 001 Tallybot :Welcome");
        fake.WriteLine(":irc.fake 376 Tallybot :End of MOTD");
        ASSERT_TRUE(fake.WaitForLine("^JOIN #tally$")) << fake.Received().Transcript();
        fake.WriteLine(":Tallybot!bot@host JOIN :#tally");
        ASSERT_TRUE(irc.WaitForStatus(kJoined)) << irc.PaneText();
    }

    // The server's half of the SASL PLAIN exchange up to the client's credentials.
    void SaslUpToCredentials() {
        irc.ConnectTo(fake.Host(), fake.Port());
        ASSERT_TRUE(fake.WaitForClient());
        ASSERT_TRUE(fake.WaitForLine("^CAP LS 302$")) << fake.Received().Transcript();
        fake.WriteLine(":irc.fake CAP * LS :multi-prefix sasl");
        ASSERT_TRUE(fake.WaitForLine("^CAP REQ :sasl$")) << fake.Received().Transcript();
        fake.WriteLine(":irc.fake CAP * ACK :sasl");
        ASSERT_TRUE(fake.WaitForLine("^AUTHENTICATE PLAIN$")) << fake.Received().Transcript();
        fake.WriteLine("AUTHENTICATE +");
    }

    FakeIrcServer fake;
    IrcUnderTest irc;
};

TEST_F(ExtrasFake, SaslPlainSucceedsBeforeRegistrationEnds) {
    irc.extras.SaslMechanism = "PLAIN";
    irc.extras.SaslUser = "tally";
    irc.extras.SaslPassword = "s3cret";
    SaslUpToCredentials();
    ASSERT_TRUE(fake.WaitForLine("^AUTHENTICATE dGFsbHkAdGFsbHkAczNjcmV0$")) << fake.Received().Transcript();
    fake.WriteLine(":irc.fake 900 Tallybot Tallybot!bot@host tally :You are now logged in as tally");
    fake.WriteLine(":irc.fake 903 Tallybot :SASL authentication successful");
    ASSERT_TRUE(fake.WaitForLine("^CAP END$")) << fake.Received().Transcript();
    Register();
    EXPECT_EQ(irc.CountPane("*** SASL authentication successful"), 1) << irc.PaneText();
}

TEST_F(ExtrasFake, SaslPlainFailureIsReportedAndRegistrationGoesOn) {
    irc.extras.SaslMechanism = "PLAIN";
    irc.extras.SaslUser = "tally";
    irc.extras.SaslPassword = "wrong";
    SaslUpToCredentials();
    ASSERT_TRUE(fake.WaitForLine("^AUTHENTICATE dGFsbHkAdGFsbHkAd3Jvbmc=$")) << fake.Received().Transcript();
    fake.WriteLine(":irc.fake 904 Tallybot :SASL authentication failed");
    ASSERT_TRUE(fake.WaitForLine("^CAP END$")) << fake.Received().Transcript();
    Register();
    EXPECT_EQ(irc.CountPane("[IRC] SASL authentication failed: SASL authentication failed"), 1) << irc.PaneText();
}

TEST_F(ExtrasFake, CtcpFloodIsAnsweredAtMostFiveTimes) {
    irc.extras.PacedSending = 1;
    irc.ConnectTo(fake.Host(), fake.Port());
    ASSERT_TRUE(fake.WaitForClient());
    ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$")) << fake.Received().Transcript();
    Register();
    std::string flood;
    for (int n = 0; n < 12; ++n)
        flood += ":mallory!m@evil PRIVMSG Tallybot :\x01VERSION\x01\r\n";
    fake.Write(flood);
    ASSERT_TRUE(irc.WaitForPane("[mallory VERSION]")) << irc.PaneText();
    // A channel line queued after the answers: once it arrived, every answer that was sent has arrived.
    irc.core.SendToChannel("marker");
    ASSERT_TRUE(fake.WaitForLine("^PRIVMSG #tally :marker$", 30s)) << fake.Received().Transcript();
    int answers = 0;
    for (const std::string& line : fake.Received().Lines())
        answers += line.rfind("NOTICE mallory :\x01VERSION ", 0) == 0 ? 1 : 0;
    EXPECT_EQ(answers, 5) << fake.Received().Transcript();
}

} // namespace
} // namespace tallybot::irc::itest
