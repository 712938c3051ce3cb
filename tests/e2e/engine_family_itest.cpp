// One match per engine family, end to end: `tallybot --headless` with its own home folder queries
// tallybot-gamesim and talks to a scripted IRC server, where a user asks for the reports. Each
// family is three files under tests/data/e2e/: <family>.match, the simulator's script ("#ini KEY=V"
// lines are [Extras] settings of the bot); <family>.igp, the game profile, when the family has
// one; <family>.transcript, what the bot says in the channel, byte for byte ("{NN}" is colour code
// 3 and NN, SERVER the simulator's address), with "> TEXT" where the user says TEXT: the bot's
// earlier lines are awaited first.
// TALLYBOT_WRITE_EXPECTED=1 rewrites the transcripts from what the bot said (read the diff).

#include "tests/e2e/tallybot_process.h"
#include "tests/support/fixture_file.h"
#include "tests/support/irc_peers.h"
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::e2e {
namespace {

using namespace std::chrono_literals;
using testsupport::RegexQuote;

constexpr auto kLinesDeadline = 45s; // a scripted match runs for up to 30 s

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

std::string Uncoloured(const std::string& text) {
    std::string pattern;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\x03' && i + 2 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1]))) {
            const std::size_t digits = std::isdigit(static_cast<unsigned char>(text[i + 2])) ? 2 : 1;
            pattern += "{" + text.substr(i + 1, digits) + "}";
            i += digits;
        } else {
            pattern += text[i];
        }
    }
    return pattern;
}

class EngineFamilyTest : public ::testing::TestWithParam<std::string> {
protected:
    // The bot's lines in #test so far.
    std::vector<std::string> Said() {
        const std::string prefix = "PRIVMSG #test :";
        std::vector<std::string> said;
        for (const std::string& line : irc.Received().Lines())
            if (line.starts_with(prefix)) said.push_back(line.substr(prefix.size()));
        const std::string server = "127.0.0.1:" + std::to_string(sim.Port());
        for (std::string& line : said) // the simulator's port differs from run to run
            if (const auto at = line.find(server); at != std::string::npos) line.replace(at, server.size(), "SERVER");
        return said;
    }
    // Until the bot has said `count` lines; when rewriting, until it has been quiet for a while.
    bool AwaitLines(std::size_t count) {
        if (!std::getenv("TALLYBOT_WRITE_EXPECTED"))
            return testsupport::WaitUntil([&] { return Said().size() >= count; }, kLinesDeadline);
        for (std::size_t seen = Said().size(); testsupport::WaitUntil([&] { return Said().size() > seen; }, 8s);)
            seen = Said().size();
        return true;
    }
    // The request again (the send delay refuses it at first) until the bot says it was sent.
    bool Ask(const std::string& text) {
        const std::string command = text.substr(0, text.find(' '));
        for (int attempt = 0; attempt < 10; ++attempt) {
            irc.WriteLine(":alice!a@h PRIVMSG #test :" + text);
            if (bot.Out.WaitFor("^" + RegexQuote("[SYSTEM] alice requested " + command + " -> sent."), 3s)) return true;
        }
        return false;
    }

    testsupport::FakeIrcServer irc;
    GamesimProcess sim;
    test::TempFolder home;
    TallybotProcess bot;
};

TEST_P(EngineFamilyTest, ChannelTranscript) {
    const std::string family = GetParam();
    std::string match = test::ReadFixture("e2e/" + family + ".match"), extras, line;
    for (std::istringstream in(match); std::getline(in, line);)
        if (line.starts_with("#ini ")) extras += line.substr(5) + "\r\n";
    ASSERT_TRUE(match.starts_with("engine "));
    ASSERT_TRUE(sim.Start(match.substr(7, match.find('\n') - 7), match)) << sim.Output();
    ASSERT_TRUE(irc.Listen());
    const std::filesystem::path profile = test::SourceRoot() / "tests/data/e2e" / (family + ".igp");
    std::filesystem::create_directories(home.File("Profiles"));
    if (std::filesystem::exists(profile)) std::filesystem::copy_file(profile, home.File("Profiles/" + family + ".igp"));
    test::WriteBytes(
        home.File("Tallybot.ini"),
        "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" + std::to_string(irc.Port()) +
            "\r\n1Channel=#test\r\n1Nick=Tallybot\r\n[Game]\r\n1Host=127.0.0.1:" + std::to_string(sim.Port()) +
            "\r\nQueryTime=500\r\n[Autopost]\r\nSendDelay=1\r\n[Extras]\r\nIdentEnabled=0\r\n" + extras);
    ASSERT_TRUE(bot.Start({"--home", QString::fromStdString(home.File("")), "--headless"}));
    ASSERT_TRUE(irc.WaitForLine("^NICK ")) << bot.Transcript();
    irc.WriteLine(":irc.fake 001 Tallybot :Welcome");
    irc.WriteLine(":irc.fake 376 Tallybot :End of MOTD");
    ASSERT_TRUE(irc.WaitForLine("^JOIN #test")) << bot.Transcript();
    irc.WriteLine(":Tallybot!u@h JOIN :#test");
    ASSERT_TRUE(bot.Out.WaitFor("^Game server: ONLINE - ")) << bot.Transcript();

    const std::string file = "e2e/" + family + ".transcript";
    std::string comments;
    std::vector<std::string> expected;
    std::vector<std::pair<std::size_t, std::string>> asked; // after how many of the bot's lines
    for (std::istringstream in(test::ReadFixture(file)); std::getline(in, line);) {
        if (line.starts_with("> ")) {
            ASSERT_TRUE(AwaitLines(expected.size())) << bot.Transcript() << irc.Received().Transcript();
            asked.emplace_back(Said().size(), line);
            ASSERT_TRUE(Ask(line.substr(2))) << bot.Transcript();
        } else if (line.starts_with("#")) {
            comments += line + "\n";
        } else {
            expected.push_back(Coloured(line));
        }
    }
    AwaitLines(expected.size());
    if (std::getenv("TALLYBOT_WRITE_EXPECTED")) {
        std::ofstream out(test::SourceRoot() / "tests/data" / file, std::ios::binary);
        out << comments;
        const std::vector<std::string> said = Said();
        for (std::size_t i = 0, a = 0; i <= said.size(); ++i) {
            for (; a < asked.size() && asked[a].first == i; ++a)
                out << asked[a].second << "\n";
            if (i < said.size()) out << Uncoloured(said[i]) << "\n";
        }
        return;
    }
    EXPECT_EQ(Said(), expected) << bot.Transcript();
    bot.Terminate(); // SIGTERM: the normal shutdown
    ASSERT_TRUE(irc.WaitForLine("^QUIT ")) << bot.Transcript();
    irc.CloseClient();
    ASSERT_TRUE(bot.WaitForExit()) << bot.Transcript();
    EXPECT_EQ(bot.ExitCode(), 0) << bot.Transcript();
}

INSTANTIATE_TEST_SUITE_P(Families, EngineFamilyTest,
                         ::testing::Values("q3_ctf", "q3_fork", "darkplaces", "q2", "unreal", "ut2003", "halflife",
                                           "source", "farcry", "doom3"),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tallybot::e2e
