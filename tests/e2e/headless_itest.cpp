// The whole program without a window: `tallybot --headless` with its own home folder, a real
// ngircd, the game-server simulator and a user in the channel; remote control, standard output,
// the terminal's colours and the shutdown. What the bot posts per engine family is pinned by
// engine_family_itest.cpp.
#include "tests/e2e/tallybot_process.h"
#include "tests/support/fixture_file.h"
#include "tests/support/irc_daemon.h"
#include "tests/support/irc_peers.h"
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
using testsupport::IrcTestClient;
using testsupport::NgircdServer;
using testsupport::RegexQuote;

std::string SettingsFile(std::uint16_t ircPort) {
    return "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" + std::to_string(ircPort) +
           "\r\n1Channel=#test\r\n1Nick=Tallybot\r\n"
           "[Game]\r\n1Host=127.0.0.1:9\r\nQueryTime=500\r\n"
           "[Autopost]\r\nSendDelay=3\r\nCommandParameter=1\r\n"
           "[Extras]\r\nIdentEnabled=0\r\n";
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
        WriteBytes(home.File("Tallybot.ini"), SettingsFile(ircd.Port()));
        homeArg = QString::fromStdString(home.File(""));
    }

    NgircdServer ircd;
    IrcTestClient alice{"alice"};
    TempFolder home;
    QString homeArg;
    TallybotProcess bot;
    GamesimProcess sim;
};

TEST_F(HeadlessTest, ChannelCommandsRemoteControlAndShutdown) {
    // The positional command runs once after load: it stops the probe of the placeholder host,
    // and, being longer than six characters, lets "ConGam" name a new server later.
    ASSERT_TRUE(bot.Start({"--home", homeArg, "--headless", "DisGam:now"}));
    ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ JOIN :?#test$)")) << bot.Transcript();
    ASSERT_TRUE(bot.Out.WaitFor("^Game server: OFFLINE$")) << bot.Transcript();

    ASSERT_TRUE(sim.Start("Q3", "host Test Arena\nmap q3ctf1\nplayer Alice red 10 50\n")) << sim.Output();
    const std::string server = "127.0.0.1:" + std::to_string(sim.Port());
    ASSERT_EQ(RunTallybot({"--home", homeArg, "--send", QString::fromStdString("ConGam:" + server)}), 0);
    ASSERT_TRUE(bot.Out.WaitFor("^Game server: ONLINE - Q3$")) << bot.Transcript();

    // A channel line in Windows-1252 with IRC codes, for the check of standard output below.
    alice.Say("#test", "caf\xE9 \x02ok\x02");

    // The channel commands: answered once the send delay from start-up is over, then refused as
    // spam and for another instance.
    const std::string answered = "^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> sent.") + "$";
    bool sent = false;
    for (int attempt = 0; attempt < 10 && !sent; ++attempt) {
        alice.Say("#test", "!ssinfo Tallybot");
        sent = bot.Out.WaitFor(answered, 2s).has_value();
    }
    ASSERT_TRUE(sent) << bot.Transcript();
    alice.Say("#test", "!ssinfo Tallybot");
    alice.Say("#test", "!ssinfo Otherbot");
    EXPECT_TRUE(
        bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> ignored (spam protection).") + "$"))
        << bot.Transcript();
    EXPECT_TRUE(
        bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested !ssinfo -> ignored (wrong instance).") + "$"))
        << bot.Transcript();

    // Remote control of the running instance.
    ASSERT_EQ(RunTallybot({"--home", homeArg, "--send", "DisGam"}), 0);
    EXPECT_TRUE(bot.Out.WaitFor("^Game server: OFFLINE$")) << bot.Transcript();
    ASSERT_EQ(
        RunTallybot({"--home", homeArg, "--send",
                     QString::fromStdString("ConIRC:127.0.0.1:" + std::to_string(ircd.Port()) + ":#test2:Tallybot2")}),
        0);
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ QUIT :)")) << alice.Transcript();
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot2!\S+ JOIN :?#test2$)")) << alice.Transcript();

    // Redirected standard output: UTF-8 text without control bytes, holding what a window shows
    // besides the pane (profile, query state) and the bot's own posts.
    const std::vector<std::string>& out = bot.Out.Lines();
    for (const char* expected :
         {"Profile: None", "<alice> caf\xC3\xA9 ok", "> Hostname: Test Arena , Map: q3ctf1 , Players: 1 / 16"})
        EXPECT_NE(std::find(out.begin(), out.end(), expected), out.end()) << expected << "\n" << bot.Transcript();
    for (const std::string& line : out) {
        EXPECT_EQ(QString::fromUtf8(line).toStdString(), line);
        EXPECT_TRUE(std::none_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
            << line;
    }

    // SIGTERM: the normal shutdown, every key saved, a fresh log with the last entry only.
    bot.Terminate();
    ASSERT_TRUE(bot.WaitForExit()) << bot.Transcript();
    EXPECT_EQ(bot.ExitStatus(), QProcess::NormalExit);
    EXPECT_EQ(bot.ExitCode(), 0);
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot2!\S+ QUIT :)")) << alice.Transcript();
    const std::string ini = ReadBytes(home.File("Tallybot.ini"));
    const std::string defaults = tallybot::test::ReadFixture("settings/default.ini");
    for (const std::string& key : Keys(defaults))
        EXPECT_TRUE(Keys(ini).count(key)) << key;
    EXPECT_NE(ini.find("1Nick=Tallybot\r\n"), std::string::npos);
    const std::string log = ReadBytes(home.File("Tallybot.log"));
    EXPECT_TRUE(QRegularExpression("^frmMain;Form_QueryUnload;[^;]+;0;Application terminated normally\r\n$")
                    .match(QString::fromLatin1(log.c_str()))
                    .hasMatch())
        << log;
}

// On a terminal the pane's colours are the 16 standard ANSI colours (the default colour is the
// terminal's own); with NO_COLOR there is no escape sequence at all.
TEST_F(HeadlessTest, TerminalShowsSixteenColoursOrNoneWithNoColor) {
    if (!TallybotProcess::TerminalAvailable()) GTEST_SKIP() << "script(1) is not installed";
    const QRegularExpression escape("\x1b[^m]*m");
    const QRegularExpression standard("^\x1b\\[0(;1)?(;4)?(;(3[0-7]|9[0-7]))?(;(4[0-7]|10[0-7]))?m$");
    for (const bool noColor : {false, true}) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove("NO_COLOR");
        if (noColor) env.insert("NO_COLOR", "1");
        TallybotProcess onTerminal;
        ASSERT_TRUE(onTerminal.StartOnTerminal({"--home", homeArg, "--headless", "DisGam:now"}, env));
        ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ JOIN :?#test$)")) << onTerminal.Transcript();
        alice.Say("#test", "\x03"
                           "04red \x03"
                           "12,08blue \x02\x1f"
                           "bold");
        ASSERT_TRUE(onTerminal.Out.WaitFor("alice.*red.*blue.*bold")) << onTerminal.Transcript();
        const QString text = QString::fromUtf8(onTerminal.Out.Transcript());
        int colours = 0;
        for (auto it = escape.globalMatch(text); it.hasNext();) {
            const QString sequence = it.next().captured();
            EXPECT_TRUE(standard.match(sequence).hasMatch()) << sequence.mid(1).toStdString();
            colours += sequence.contains(";3") || sequence.contains(";9");
        }
        EXPECT_EQ(text.count(QChar(0x1b)) == 0, noColor) << onTerminal.Transcript();
        EXPECT_EQ(colours > 0, !noColor);
        onTerminal.Terminate();
        ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ QUIT :)")) << alice.Transcript();
        ASSERT_TRUE(onTerminal.WaitForExit()) << onTerminal.Transcript();
    }
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
