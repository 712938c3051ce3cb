// Hostile replies to the GameSpy, HL, FC, UT2003 and D3 parsers: truncated at every byte, empty,
// 64 KiB, random, and more players than the table holds. Under ASan any read past a reply fails.

#include "query/parsers.h"
#include "tests/support/reply_fixture.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using Parser = void (*)(std::string_view, GameState&, const profiles::GameProfile&);

struct Family {
    const char* name;
    Parser parse;
    std::vector<std::string> fixtures;
};

const std::vector<Family>& Families() {
    static const std::vector<Family> families = {
        {"GameSpy", ParseGameSpy, {"ut/status.bin", "ut/first_datagram.bin", "ut/second_datagram.bin", "aa/status.bin"}},
        {"HL", ParseHLReply, {"hl/info.bin", "hl/players.bin", "hl/rules.bin"}},
        {"FC", ParseFCReply, {"fc/status.bin", "fc/players.bin", "fc/rules.bin"}},
        {"UT2003", ParseUT2003Reply, {"ut2k3/info.bin", "ut2k3/rules.bin", "ut2k3/players.bin"}},
        {"D3", ParseD3EngineData, {"d3/info.bin", "d3/noplayers.bin"}},
    };
    return families;
}

TEST(BinaryRepliesRobustnessTest, EveryTruncationParses) {
    for (const Family& family : Families()) {
        for (const std::string& name : family.fixtures) {
            const std::string reply = testsupport::ReadReplyFixture(name);
            for (std::size_t length = 0; length <= reply.size(); ++length) {
                GameState state;
                family.parse(std::string_view(reply).substr(0, length), state, profiles::GameProfile{});
                ASSERT_EQ(state.Players[0], PlayerStatus{}) << name << " cut at " << length;
            }
        }
    }
}

TEST(BinaryRepliesRobustnessTest, LargeAndRandomRepliesParse) {
    std::vector<std::string> replies = {std::string(65536, '\0'), std::string(65536, '\xFF'), std::string(65536, '\\'),
                                        std::string(65536, 'a')};
    for (char type : {'C', 'D', 'E', 'S', 'P', 'R', '\0', '\1', '\2'}) {
        std::string reply(65536, '\x01');
        reply[4] = type;
        replies.push_back(reply);
    }
    std::mt19937 random(20031);
    for (int i = 0; i < 300; ++i) {
        std::string reply(random() % 300, '\0');
        for (char& c : reply)
            c = static_cast<char>(random() % 4 == 0 ? 0 : random());
        replies.push_back(reply);
    }
    for (const Family& family : Families()) {
        for (const std::string& reply : replies) {
            GameState state;
            family.parse(reply, state, profiles::GameProfile{});
            // GameSpy and FC take the count from the reply itself; the others count what they read.
            if (family.parse != ParseGameSpy && family.parse != ParseFCReply) {
                ASSERT_LE(state.Status.NumPlayers, 50) << family.name;
            }
        }
    }
}

// Replies too short to name their type, or of a type the parser does not know, change nothing.
TEST(BinaryRepliesRobustnessTest, ShortAndForeignRepliesAreIgnored) {
    using namespace std::string_literals;
    const std::pair<Parser, std::string> cases[] = {
        {ParseGameSpy, "\\@\\x"s}, // a short notice with "@"
        {ParseHLReply, "\xFF\xFF\xFF\xFF"s},
        {ParseHLReply, "\xFF\xFF\xFF\xFFXabc\0def"s},
        {ParseFCReply, "\x7F"s},
        {ParseFCReply, "\x7F\xFF\xFF\xFFQ\x0E"s
                       "abc"s},
        {ParseUT2003Reply, "\x80\0\0\0"s},
        {ParseUT2003Reply, "\x80\0\0\0\x03xxxxxxxxxxxxxxxxxxxxxxxx"s},
    };
    for (const auto& [parse, reply] : cases) {
        GameState state;
        state.Status.HostName = "kept";
        state.Status.NumPlayers = 2;
        parse(reply, state, profiles::GameProfile{});
        EXPECT_EQ(state.Status.HostName, "kept") << reply;
        EXPECT_EQ(state.Status.NumPlayers, 2) << reply;
    }
}

// Sixty player records: the first fifty are kept, the rest is dropped.
TEST(BinaryRepliesRobustnessTest, SixtyPlayersKeepFifty) {
    struct Case {
        Parser parse;
        std::string head, record;
    };
    const Case cases[] = {
        {ParseHLReply, std::string("\377\377\377\377D\074\001", 7), std::string("Pl\0\005\0\0\0\0\0\0\0\002", 12)},
        {ParseUT2003Reply, std::string("\x80\0\0\0\x02", 5), std::string("\x01\0\0\0\x03Pl\0\x05\0\0\0\x07\0\0\0", 16)},
        {ParseD3EngineData, std::string("\xFF\xFFinfoResponse\0\0\0\0\0\x29\0\x01\0\0\0", 25),
         std::string("\x01\0\x05\0\0\0\0Pl\0", 10)},
    };
    for (const Case& c : cases) {
        std::string reply = c.head;
        for (int i = 0; i < 60; ++i)
            reply += c.record;
        GameState state;
        c.parse(reply, state, profiles::GameProfile{});
        EXPECT_EQ(state.Status.NumPlayers, 50);
        EXPECT_EQ(state.Players[50].Name, "Pl");
    }
}

} // namespace
} // namespace tallybot::query
