// A new home (no Tallybot.ini yet) against servers of today: the present-day [Extras] values it is
// written with let `tallybot --headless` register on InspIRCd, join and answer a channel command.
#include "tests/e2e/tallybot_process.h"
#include "tests/support/inspircd_server.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace tallybot::e2e {
namespace {

using namespace std::chrono_literals;
using testsupport::InspircdServer;
using testsupport::IrcTestClient;
using testsupport::RegexQuote;

TEST(PresentDayHeadless, NewHomeRegistersJoinsAndAnswersOnInspircd) {
    if (!InspircdServer::Available()) GTEST_SKIP() << "inspircd is not installed";
    InspircdServer ircd;
    ASSERT_TRUE(ircd.Start()) << ircd.Log();
    IrcTestClient alice{"alice"};
    ASSERT_TRUE(alice.Connect(ircd.Host(), ircd.Port()));
    ASSERT_TRUE(alice.Register()) << alice.Transcript();
    ASSERT_TRUE(alice.Join("#test")) << alice.Transcript();

    tallybot::test::TempFolder home;
    TallybotProcess bot;
    const std::string connect = "ConIRC:127.0.0.1:" + std::to_string(ircd.Port()) + ":#test:Tallybot";
    ASSERT_TRUE(
        bot.Start({"--home", QString::fromStdString(home.File("")), "--headless", QString::fromStdString(connect)}));
    // The user name is IdentEmail's part before "@"; the classic e-mail address would get a 468.
    ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!tallybot@127\.0\.0\.1 JOIN :#test$)", 20s)) << bot.Transcript();

    // The send delay runs once from start-up: the request is repeated until it is answered.
    const std::string about = ":Tallybot!tallybot@127.0.0.1 PRIVMSG #test :\x03"
                              "10Welcome to \x03"
                              "2Tallybot " TALLYBOT_VERSION " \x03"
                              "10by \x03"
                              "2Kavik\x03"
                              "10!";
    bool answered = false;
    for (int attempt = 0; attempt < 10 && !answered; ++attempt) {
        alice.Say("#test", "!about");
        answered = alice.WaitForLine("^" + RegexQuote(about) + "$", 3s).has_value();
    }
    EXPECT_TRUE(answered) << alice.Transcript() << bot.Transcript();
    EXPECT_TRUE(bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !about -> sent.") + "$"))
        << bot.Transcript();
    EXPECT_FALSE(bot.Err.Pending("^IRC server error")) << bot.Transcript();
    bot.Terminate();
    EXPECT_TRUE(bot.WaitForExit()) << bot.Transcript();
}

} // namespace
} // namespace tallybot::e2e
