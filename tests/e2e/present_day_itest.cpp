// A new home (no Tallybot.ini yet) against servers of today: the present-day [Extras] values it is
// written with let `tallybot --headless` register on InspIRCd, join and answer a channel command.
#include "tests/e2e/tallybot_process.h"
#include "tests/support/irc_daemon.h"
#include "tests/support/irc_peers.h"
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

    // An older home with only ShowErrorNumerics: the refusal is seen, in the pane and on stderr.
    tallybot::test::TempFolder old;
    tallybot::test::WriteBytes(old.File("Tallybot.ini"), "[Extras]\r\nShowErrorNumerics=1\r\nIdentEnabled=0\r\n");
    TallybotProcess classic;
    ASSERT_TRUE(
        classic.Start({"--home", QString::fromStdString(old.File("")), "--headless", QString::fromStdString(connect)}));
    EXPECT_TRUE(classic.Err.WaitFor("^IRC server error 468: Your username is not valid$")) << classic.Transcript();
    EXPECT_TRUE(classic.Out.WaitFor("^Your username is not valid$")) << classic.Transcript();
}

// QueryRetry: a server that falls silent for 40 s is probed 30 s after the tenth silent round (two
// seconds apart) and the query comes back by itself, saying why at every step.
TEST(PresentDayHeadless, SilentServerIsProbedAndTheQueryComesBack) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("Q3", "at 5 silence\nat 45 resume\n")) << sim.Output();
    tallybot::test::TempFolder home;
    tallybot::test::WriteBytes(home.File("Tallybot.ini"), "[Game]\r\n1Host=127.0.0.1:" + std::to_string(sim.Port()) +
                                                              "\r\nQueryTime=2000\r\n[Extras]\r\nQueryRetry=1\r\n");
    TallybotProcess bot;
    ASSERT_TRUE(bot.Start({"--home", QString::fromStdString(home.File("")), "--headless"}));
    ASSERT_TRUE(bot.Err.WaitFor("^Tallybot: Gameserver answers again\\.$", 90s)) << bot.Transcript();
    ASSERT_TRUE(bot.Out.WaitFor("^Game server: NO REPLY - PROBING")) << bot.Transcript();
    ASSERT_TRUE(bot.Out.WaitFor("^Game server: ONLINE - Q3$")) << bot.Transcript();
    // The states on standard output, the reasons on standard error.
    const auto starting = [](const std::vector<std::string>& lines, const std::string& prefix) {
        std::vector<std::string> kept;
        for (const std::string& line : lines)
            if (line.rfind(prefix, 0) == 0) kept.push_back(line);
        return kept;
    };
    EXPECT_EQ(starting(bot.Out.Lines(), "Game server: "),
              (std::vector<std::string>{"Game server: CONNECTING", "Game server: ONLINE - Q3",
                                        "Game server: NO REPLY - NEXT PROBE IN 30 s",
                                        "Game server: NO REPLY - PROBING, NEXT IN 60 s", "Game server: ONLINE - Q3"}))
        << bot.Transcript();
    EXPECT_EQ(starting(bot.Err.Lines(), "Tallybot: "),
              (std::vector<std::string>{"Tallybot: Gameserver is not responding. Next probe in 30 s.",
                                        "Tallybot: Gameserver is still not responding. Probing; next probe in 60 s.",
                                        "Tallybot: Gameserver answers again."}))
        << bot.Transcript();
    bot.Terminate();
    EXPECT_TRUE(bot.WaitForExit()) << bot.Transcript();
}

} // namespace
} // namespace tallybot::e2e
