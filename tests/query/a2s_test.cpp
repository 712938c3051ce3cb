// The A2S query: requests with and without a challenge, the challenge exchange, split reassembly
// and its bounds, and truncated replies (tests/data/parsers/cases.txt parses the whole ones).

#include "query/a2s_exchange.h"
#include "query/a2s_parser.h"
#include "tests/support/fixture_file.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;
std::string ReadReplyFixture(const std::string& path) {
    return test::ReadFixture(path);
}

const std::string kNone = "\xFF\xFF\xFF\xFF"s;

std::string Part(std::uint32_t id, int total, int number, const std::string& payload) {
    std::string out = "\xFF\xFF\xFF\xFE"s;
    for (int i = 0; i < 4; ++i)
        out += static_cast<char>((id >> (8 * i)) & 0xFF);
    return out + static_cast<char>(total) + static_cast<char>(number) + "\xE0\x04"s + payload;
}

TEST(A2SRequestTest, BytesOfEachStep) {
    EXPECT_EQ(BuildA2SQuery(0, kNone), "\xFF\xFF\xFF\xFFTSource Engine Query\0"s);
    EXPECT_EQ(BuildA2SQuery(0, "\x01\x02\x03\x04"), "\xFF\xFF\xFF\xFFTSource Engine Query\0\x01\x02\x03\x04"s);
    EXPECT_EQ(BuildA2SQuery(1, kNone), "\xFF\xFF\xFF\xFFU\xFF\xFF\xFF\xFF"s);
    EXPECT_EQ(BuildA2SQuery(2, "\x01\x02\x03\x04"), "\xFF\xFF\xFF\xFFV\x01\x02\x03\x04"s);
}

TEST(A2SExchangeTest, ChallengeIsAnsweredWithTheSameRequestThenKept) {
    A2SExchange exchange;
    int step = 1;
    EXPECT_EQ(exchange.NextRequest(step), BuildA2SQuery(1, kNone));
    EXPECT_EQ(step, 2);
    const auto outcome = exchange.Receive(ReadReplyFixture("a2s/challenge.bin"));
    EXPECT_EQ(outcome, (A2SExchange::Outcome{std::nullopt, BuildA2SQuery(1, "\x4B\xA1\x40\x07")}));
    // The next round's request carries the challenge from the start.
    EXPECT_EQ(exchange.NextRequest(step), BuildA2SQuery(2, "\x4B\xA1\x40\x07"));
    EXPECT_EQ(step, 0);
}

TEST(A2SExchangeTest, EndlessChallengesGetTwoRepeatsPerRequest) {
    A2SExchange exchange;
    exchange.ProbeRequest();
    const std::string challenge = ReadReplyFixture("a2s/challenge.bin");
    EXPECT_TRUE(exchange.Receive(challenge).resend);
    EXPECT_TRUE(exchange.Receive(challenge).resend);
    EXPECT_FALSE(exchange.Receive(challenge).resend);
    int step = 0;
    exchange.NextRequest(step);
    EXPECT_TRUE(exchange.Receive(challenge).resend);
}

TEST(A2SAssemblyTest, PartsInAnyOrderMakeTheReply) {
    A2SAssembly assembly;
    const std::string p0 = ReadReplyFixture("a2s/rules_split0.bin");
    const std::string p1 = ReadReplyFixture("a2s/rules_split1.bin");
    const std::string p2 = ReadReplyFixture("a2s/rules_split2.bin");
    EXPECT_FALSE(assembly.Add(p2));
    EXPECT_FALSE(assembly.Add(p0));
    EXPECT_EQ(assembly.PartsHeld(), 2u);
    EXPECT_EQ(assembly.Add(p1), ReadReplyFixture("a2s/rules.bin"));
    EXPECT_EQ(assembly.PartsHeld(), 0u);
}

struct DropCase {
    const char* name;
    std::vector<std::string> datagrams;
};

class A2SAssemblyDropTest : public ::testing::TestWithParam<DropCase> {};

TEST_P(A2SAssemblyDropTest, GivesNothing) {
    A2SAssembly assembly;
    std::optional<std::string> last;
    for (const std::string& d : GetParam().datagrams)
        last = assembly.Add(d);
    EXPECT_FALSE(last);
}

INSTANTIATE_TEST_SUITE_P(
    Bounds, A2SAssemblyDropTest,
    ::testing::Values(
        DropCase{"compressed", {Part(0x80000001, 1, 0, kNone + "E")}},
        DropCase{"too_many_parts", {Part(1, 33, 0, kNone + "E")}}, DropCase{"number_past_total", {Part(1, 2, 2, "x")}},
        DropCase{"header_only", {"\xFF\xFF\xFF\xFE\x01\x00\x00\x00\x01\x00\xE0\x04"s}},
        // a new id drops the first reply's part, so the old id's last part completes nothing
        DropCase{"new_id_restarts", {Part(1, 2, 0, kNone + "E"), Part(2, 2, 0, kNone + "D"), Part(1, 2, 1, "x")}},
        DropCase{"whole_without_header", {Part(3, 2, 0, "ab"), Part(3, 2, 1, "cd")}},
        DropCase{"over_64k", {Part(4, 2, 0, kNone + std::string(40000, 'a')), Part(4, 2, 1, std::string(30000, 'b'))}},
        DropCase{"neither", {"\x7F\xFF\xFF\xFFstatus"s}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(A2SParserTest, TruncatedRepliesKeepWhatTheyHold) {
    const std::string info = ReadReplyFixture("a2s/info.bin");
    const std::string players = ReadReplyFixture("a2s/players.bin");
    profiles::GameProfile profile;
    for (std::size_t cut = 0; cut < info.size(); ++cut) {
        GameState state;
        ParseA2SReply(std::string_view(info).substr(0, cut), state, profile);
        if (cut > 30) {
            EXPECT_EQ(state.Status.HostName, "Source Test") << cut;
        }
    }
    for (std::size_t cut = 0; cut < players.size(); ++cut) {
        GameState state;
        ParseA2SReply(std::string_view(players).substr(0, cut), state, profile);
        EXPECT_LE(state.Status.NumPlayers, 3) << cut;
    }
}

} // namespace
} // namespace tallybot::query
