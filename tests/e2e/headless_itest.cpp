// The whole program without a window: `tallybot --headless` with its own home folder, a real
// ngircd, the game-server simulator and a user in the channel who reads what the bot posts.
#include "tests/e2e/tallybot_process.h"
#include "tests/support/fake_irc_server.h"
#include "tests/support/fixture_file.h"
#include "tests/support/gamesim_process.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/ngircd_server.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>

#include <QElapsedTimer>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace tallybot::e2e {
namespace {

using namespace std::chrono_literals;
using tallybot::test::ReadBytes;
using tallybot::test::TempFolder;
using tallybot::test::WriteBytes;
using testsupport::FakeIrcServer;
using testsupport::GamesimProcess;
using testsupport::IrcTestClient;
using testsupport::NgircdServer;
using testsupport::RegexQuote;

constexpr auto kMatchDeadline = 40s; // the scripted match runs for about 30 s

// Capture the flag: the server reports teams and team scores, a capture is worth 5 points, the
// standard posts (no custom texts), no interval posts.
const char* const kCtfProfile = "[General]\r\nDescription=Quake 3 CTF for the end-to-end test\r\n"
                                "[Game]\r\nEngine=2\r\nName=\r\nType=4\r\n"
                                "[AdvInfo]\r\nAdvanced=1\r\nAutoTeams=1\r\nScoring=2\r\nScorePerCap=5\r\n"
                                "[Posting]\r\nPostScoreChange=1\r\nStatusPosting=1\r\nInterval=0\r\n"
                                "IntervalTime=1\r\nIntervalInfo=5\r\n"
                                "[Report]\r\nUseCustom=0\r\n";

// A match joined late (12:00 of 20 left), a red capture by Alice, a timeout called by red and the
// resume, the end, and the next match starting at the full time limit.
const char* const kMatchScript = "host Test Arena\nmap q3ctf1\ngametype 4\ngamename baseq3\ntimelimit 20\n"
                                 "capturelimit 8\ntime 12:00\nteamscore 0 0\n"
                                 "player Alice red 10 50\nplayer Bob blue 5 70\n"
                                 "at 6 score Alice 15\nat 6 teamscore 1 0\nat 6 time 11:00\n"
                                 "at 11 time TIMEOUT RED\n"
                                 "at 16 time 10:00\n"
                                 "at 21 time INTERMISSION\n"
                                 "at 26 teamscore 0 0\nat 26 score Alice 0\nat 26 score Bob 0\nat 26 time 20:00\n";

std::string SettingsFile(std::uint16_t ircPort) {
    return "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" + std::to_string(ircPort) +
           "\r\n1Channel=#test\r\n1Nick=Tallybot\r\n"
           "[Game]\r\n1Host=127.0.0.1:9\r\nQueryTime=500\r\n"
           "[Autopost]\r\nSendDelay=3\r\nCommandParameter=1\r\n"
           "[Extras]\r\nIdentEnabled=0\r\n";
}

std::string Coloured(const std::string& pattern) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::size_t close = pattern[i] == '{' ? pattern.find('}', i) : std::string::npos;
        if (close == std::string::npos) {
            text += pattern[i];
            continue;
        }
        text += '\x03' + pattern.substr(i + 1, close - i - 1);
        i = close;
    }
    return text;
}

// The keys of an INI text, as "Section/Key".
std::set<std::string> Keys(const std::string& ini) {
    std::set<std::string> keys;
    std::istringstream in(ini);
    std::string line, section;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line.front() == '[')
            section = line;
        else if (const auto eq = line.find('='); eq != std::string::npos)
            keys.insert(section + line.substr(0, eq));
    }
    return keys;
}

class HeadlessTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!NgircdServer::Available()) GTEST_SKIP() << "ngircd is not installed";
        ASSERT_TRUE(ircd.Start()) << ircd.Log();
        ASSERT_TRUE(alice.Connect(ircd.Host(), ircd.Port()));
        ASSERT_TRUE(alice.Register());
        ASSERT_TRUE(alice.Join("#test"));
        ASSERT_TRUE(alice.Join("#test2"));
        std::filesystem::create_directories(home.File("Profiles"));
        WriteBytes(home.File("Profiles/Quake3-CTF.igp"), kCtfProfile);
        WriteBytes(home.File("Tallybot.ini"), SettingsFile(ircd.Port()));
        homeArg = QString::fromStdString(home.File(""));
    }

    // Waits for one channel line of the bot, byte for byte; "{10}" stands for colour code 3 and "10".
    void ExpectPost(const std::string& channel, const std::string& pattern, std::chrono::milliseconds deadline = 10s) {
        const std::string text = Coloured(pattern);
        const auto line =
            alice.WaitForLine("^:Tallybot!\\S+ PRIVMSG " + channel + " :" + RegexQuote(text) + "$", deadline);
        EXPECT_TRUE(line) << "missing: " << text << "\n" << alice.Transcript() << bot.Transcript();
    }

    NgircdServer ircd;
    IrcTestClient alice{"alice"};
    TempFolder home;
    QString homeArg;
    TallybotProcess bot;
    GamesimProcess sim;
};

TEST_F(HeadlessTest, CtfMatchCommandsRemoteControlAndShutdown) {
    // The positional command runs once after load: it stops the probe of the placeholder host,
    // and, being longer than six characters, lets "ConGam" name a new server later.
    ASSERT_TRUE(bot.Start({"--home", homeArg, "--headless", "DisGam:now"}));
    ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ JOIN :?#test$)")) << bot.Transcript();
    ASSERT_TRUE(bot.Err.WaitFor("^Game server: OFFLINE$")) << bot.Transcript();

    ASSERT_TRUE(sim.Start("Q3", kMatchScript)) << sim.Output();
    const std::string server = "127.0.0.1:" + std::to_string(sim.Port());
    ASSERT_EQ(RunTallybot({"--home", homeArg, "--send", QString::fromStdString("ConGam:" + server)}), 0);
    ASSERT_TRUE(bot.Err.WaitFor("^Game server: ONLINE - Q3$")) << bot.Transcript();

    // Capture: the short teams post naming the capper.
    const std::string teams = "{04}Red {10}(P{2} 50{10}){2} 1 {10}:{2} 0 {10}(P{2} 70{10}) {12}Blue";
    ExpectPost("#test", teams, kMatchDeadline);
    ExpectPost("#test", "{10}Capped by{2} Alice");
    ExpectPost("#test", "{10}Map: {2}q3ctf1 {10}, Time left:{2} 11:00");
    // Timeout called by red, then the resume.
    ExpectPost("#test", "{10}A {2}Timeout {10}has been called by{2} Red {10}(Map:{2} q3ctf1{10})!", kMatchDeadline);
    ExpectPost("#test", "{10}The match has been {2}resumed{10}!", kMatchDeadline);
    // The end with the full teams post.
    ExpectPost("#test", "{10}The match {10}has {2}ended{10}!", kMatchDeadline);
    ExpectPost("#test", teams);
    ExpectPost("#test", "{10}Map: {2}q3ctf1 {10}, Time left:{2} INTERMISSION");
    ExpectPost("#test", "{04}Alice {10}(S{2} 15{10},P{2} 50{10}) {10}-{12} Bob {10}(S{2} 5{10},P{2} 70{10})");
    // The next match.
    ExpectPost("#test", "{10}The {2}match {10}has {2}begun {10}(Map:{2} q3ctf1{10})!", kMatchDeadline);

    // Channel commands: answered, refused as spam, refused for another instance.
    alice.Say("#test", "!ssinfo Tallybot");
    ExpectPost("#test", "{10}Hostname:{2} Test Arena {10}, Map:{2} q3ctf1 {10}, Players:{2} 2{10} /{2} 16");
    alice.Say("#test", "!ssinfo Tallybot");
    alice.Say("#test", "!ssinfo Otherbot");
    EXPECT_TRUE(bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> sent.") + "$"));
    EXPECT_TRUE(
        bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> ignored (spam protection).") + "$"))
        << bot.Transcript();
    EXPECT_TRUE(
        bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> ignored (wrong instance).") + "$"))
        << bot.Transcript();

    // Remote control of the running instance.
    ASSERT_EQ(RunTallybot({"--home", homeArg, "--send", "DisGam"}), 0);
    EXPECT_TRUE(bot.Err.WaitFor("^Game server: OFFLINE$")) << bot.Transcript();
    ASSERT_EQ(
        RunTallybot({"--home", homeArg, "--send",
                     QString::fromStdString("ConIRC:127.0.0.1:" + std::to_string(ircd.Port()) + ":#test2:Tallybot2")}),
        0);
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ QUIT :)")) << alice.Transcript();
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot2!\S+ JOIN :?#test2$)")) << alice.Transcript();

    // SIGTERM: the normal shutdown, every key saved, a fresh log with the last entry only.
    bot.Terminate();
    ASSERT_TRUE(bot.WaitForExit()) << bot.Transcript();
    EXPECT_EQ(bot.ExitStatus(), QProcess::NormalExit);
    EXPECT_EQ(bot.ExitCode(), 0);
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot2!\S+ QUIT :)")) << alice.Transcript();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    const std::string defaults =
        ReadBytes(std::string(std::getenv("TALLYBOT_SOURCE_DIR") ? std::getenv("TALLYBOT_SOURCE_DIR") : ".") +
                  "/tests/data/settings/default.ini");
    for (const std::string& key : Keys(defaults))
        EXPECT_TRUE(Keys(ini).count(key)) << key;
    EXPECT_NE(ini.find("1Nick=Tallybot\r\n"), std::string::npos);
    const std::string log = ReadBytes(home.File("Tallybot.log"));
    EXPECT_TRUE(QRegularExpression("^frmMain;Form_QueryUnload;[^;]+;0;Application terminated normally\r\n$")
                    .match(QString::fromLatin1(log.c_str()))
                    .hasMatch())
        << log;
}

// SIGTERM in the middle of a burst of remote commands and channel commands: every run saves the
// whole settings file, though each starts from a file that lacks most keys. A scripted server, so
// that no flood penalty of a real one sets the pace.
TEST(HeadlessShutdownTest, TerminatedDuringABurstEveryRunSavesEverySetting) {
    FakeIrcServer irc;
    ASSERT_TRUE(irc.Listen());
    TempFolder home;
    const QString homeArg = QString::fromStdString(home.File(""));
    const std::set<std::string> expected = Keys(tallybot::test::ReadFixture("settings/default.ini"));
    ASSERT_FALSE(expected.empty());
    QElapsedTimer elapsed;
    elapsed.start();
    for (int run = 1; run <= 50; ++run) {
        SCOPED_TRACE("run " + std::to_string(run));
        WriteBytes(home.File("Tallybot.ini"), SettingsFile(irc.Port()));
        TallybotProcess bot;
        ASSERT_TRUE(bot.Start({"--home", homeArg, "--headless"}));
        ASSERT_TRUE(irc.WaitForLine("^NICK ")) << bot.Transcript();
        irc.WriteLine(":irc.fake 001 Tallybot :Welcome");
        irc.WriteLine(":irc.fake 376 Tallybot :End of MOTD");
        ASSERT_TRUE(irc.WaitForLine("^JOIN #test")) << bot.Transcript();
        irc.WriteLine(":Tallybot!u@h JOIN :#test");
        std::vector<std::unique_ptr<QProcess>> senders;
        for (const char* command : {"DisGam", "ConGam", "DisGam", "ConGam"}) {
            senders.push_back(std::make_unique<QProcess>());
            senders.back()->start(TallybotBinary(), {"--home", homeArg, "--send", command});
        }
        for (int i = 0; i < 4; ++i)
            irc.WriteLine(":alice!a@h PRIVMSG #test :!ssinfo");
        bot.Terminate();
        ASSERT_TRUE(irc.WaitForLine("^QUIT ")) << bot.Transcript();
        irc.CloseClient();
        ASSERT_TRUE(bot.WaitForExit()) << bot.Transcript();
        EXPECT_EQ(bot.ExitCode(), 0) << bot.Transcript();
        for (auto& sender : senders)
            sender->waitForFinished(10000);
        const std::set<std::string> saved = Keys(ReadBytes(home.File("Tallybot.ini")));
        EXPECT_TRUE(std::includes(saved.begin(), saved.end(), expected.begin(), expected.end()));
    }
    std::printf("50 terminated runs in %lld ms\n", static_cast<long long>(elapsed.elapsed()));
}

// Once the shutdown has begun (the QUIT is out, the server has not closed yet) the remote-control
// channel takes no command: the settings are being saved.
TEST(HeadlessSendTest, ACommandSentDuringShutdownIsRefused) {
    FakeIrcServer irc;
    ASSERT_TRUE(irc.Listen());
    TempFolder home;
    const QString homeArg = QString::fromStdString(home.File(""));
    WriteBytes(home.File("Tallybot.ini"), "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" + std::to_string(irc.Port()) +
                                              "\r\n1Channel=#test\r\n1Nick=Tallybot\r\n[Extras]\r\nIdentEnabled=0\r\n");
    TallybotProcess bot;
    ASSERT_TRUE(bot.Start({"--home", homeArg, "--headless"}));
    ASSERT_TRUE(irc.WaitForLine("^NICK ")) << bot.Transcript();
    EXPECT_EQ(RunTallybot({"--home", homeArg, "--send", "DisGam"}), 0);
    bot.Terminate();
    ASSERT_TRUE(irc.WaitForLine("^QUIT ")) << bot.Transcript();
    EXPECT_EQ(RunTallybot({"--home", homeArg, "--send", "ConIRC"}), 1);
    irc.CloseClient();
    ASSERT_TRUE(bot.WaitForExit()) << bot.Transcript();
    EXPECT_EQ(irc.Connections(), 1);
}

TEST(HeadlessSendTest, SendWithoutARunningInstanceFails) {
    TempFolder home;
    EXPECT_EQ(RunTallybot({"--home", QString::fromStdString(home.File("")), "--send", "DisGam"}), 1);
}

} // namespace
} // namespace tallybot::e2e
