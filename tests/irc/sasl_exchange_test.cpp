#include "base/extras_settings.h"
#include "irc/irc_extras_options.h"
#include "irc/irc_line.h"
#include "irc/sasl_exchange.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

// One conversation: what the server says, and what the client must answer to each line.
struct Exchange {
    std::string server;
    std::vector<std::string> answer;
    std::string note = {};
    bool failed = false;
};

struct SaslCase {
    const char* name;
    SaslSettings settings;
    std::vector<Exchange> script;
};

class Sasl : public ::testing::TestWithParam<SaslCase> {};

TEST_P(Sasl, AnswersTheServer) {
    SaslExchange sasl(GetParam().settings);
    ASSERT_EQ(sasl.Start(), std::vector<std::string>{"CAP LS 302"});
    for (const Exchange& e : GetParam().script) {
        const SaslExchange::Step step = sasl.OnLine(ParseIrcLine(e.server + "\r\n"));
        EXPECT_EQ(step.Send, e.answer) << e.server;
        EXPECT_EQ(step.Note, e.note) << e.server;
        EXPECT_EQ(step.Failed, e.failed) << e.server;
    }
    EXPECT_FALSE(sasl.Active());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Sasl,
    ::testing::Values(
        SaslCase{"PlainSuccess",
                 {"PLAIN", "tally", "s3cret"},
                 {{":irc.x CAP * LS :multi-prefix sasl", {"CAP REQ :sasl"}},
                  {":irc.x CAP * ACK :sasl", {"AUTHENTICATE PLAIN"}},
                  {"AUTHENTICATE +", {"AUTHENTICATE dGFsbHkAdGFsbHkAczNjcmV0"}},
                  {":irc.x 900 * tally!u@h tally :You are now logged in as tally", {}},
                  {":irc.x 903 * :SASL authentication successful", {"CAP END"}, "SASL authentication successful"}}},
        SaslCase{"PlainFailure",
                 {"plain", "tally", "wrong"},
                 {{":irc.x CAP * LS :sasl=PLAIN,EXTERNAL", {"CAP REQ :sasl"}},
                  {":irc.x CAP * ACK :sasl", {"AUTHENTICATE PLAIN"}},
                  {":irc.x AUTHENTICATE +", {"AUTHENTICATE dGFsbHkAdGFsbHkAd3Jvbmc="}},
                  {":irc.x 904 * :SASL authentication failed",
                   {"CAP END"},
                   "SASL authentication failed: SASL authentication failed",
                   true}}},
        SaslCase{"ExternalWithMultiLineList",
                 {"EXTERNAL", "", ""},
                 {{":irc.x CAP * LS * :multi-prefix away-notify", {}},
                  {":irc.x CAP * LS :sasl=EXTERNAL", {"CAP REQ :sasl"}},
                  {":irc.x CAP * ACK :sasl", {"AUTHENTICATE EXTERNAL"}},
                  {"AUTHENTICATE +", {"AUTHENTICATE +"}},
                  {":irc.x 903 * :ok", {"CAP END"}, "SASL authentication successful"}}},
        SaslCase{"MechanismNotInList",
                 {"EXTERNAL", "", ""},
                 {{":irc.x CAP * LS :sasl=PLAIN", {"CAP END"}, "SASL EXTERNAL is not offered by the server", true}}},
        SaslCase{"ServerWithoutSasl",
                 {"PLAIN", "a", "b"},
                 {{":irc.x NOTICE * :*** Looking up your hostname", {}},
                  {":irc.x CAP * LS :multi-prefix", {"CAP END"}, "SASL PLAIN is not offered by the server", true}}},
        SaslCase{"CapabilityRefused",
                 {"PLAIN", "a", "b"},
                 {{":irc.x CAP * LS :sasl", {"CAP REQ :sasl"}},
                  {":irc.x CAP * NAK :sasl", {"CAP END"}, "SASL refused by the server", true}}},
        SaslCase{"ServerWithoutCap",
                 {"PLAIN", "a", "b"},
                 {{":irc.x 421 * CAP :Unknown command", {"CAP END"}, "SASL: the server knows no CAP", true}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Sasl, OffWithoutAMechanism) {
    SaslExchange sasl(SaslSettings{"", "a", "b"});
    EXPECT_TRUE(sasl.Start().empty());
    EXPECT_TRUE(sasl.OnLine(ParseIrcLine(":irc.x CAP * LS :sasl\r\n")).Send.empty());
}

TEST(Sasl, LongCredentialsGoInPiecesOf400) {
    SaslExchange sasl(SaslSettings{"PLAIN", std::string(149, 'u'), std::string(0, 'p')}); // 300 bytes: 400 base64
    sasl.Start();
    sasl.OnLine(ParseIrcLine(":irc.x CAP * LS :sasl\r\n"));
    sasl.OnLine(ParseIrcLine(":irc.x CAP * ACK :sasl\r\n"));
    const auto step = sasl.OnLine(ParseIrcLine("AUTHENTICATE +\r\n"));
    ASSERT_EQ(step.Send.size(), 2u);
    EXPECT_EQ(step.Send[0].size(), std::string("AUTHENTICATE ").size() + 400);
    EXPECT_EQ(step.Send[1], "AUTHENTICATE +");
}

TEST(ExtrasOptions, BuiltFromTheSettingsRecord) {
    base::ExtrasSettings extras;
    EXPECT_EQ(ExtrasOptionsFrom(extras), IrcExtrasOptions{}); // the defaults keep the classic behaviour
    extras.IrcTls = 1;
    extras.IrcTlsPinSha256 = std::string("AB:") + std::string(62, 'C');
    extras.IrcEncoding = "UTF-8";
    extras.AutoReconnect = 2; // only exactly 1 is on
    const IrcExtrasOptions o = ExtrasOptionsFrom(extras);
    EXPECT_TRUE(o.Tls.Enabled);
    EXPECT_TRUE(o.Tls.Verify);
    EXPECT_EQ(o.Tls.PinSha256, "ab" + std::string(62, 'c'));
    EXPECT_EQ(o.Encoding, IrcEncoding::Utf8);
    EXPECT_FALSE(o.AutoReconnect);
    EXPECT_EQ(NormalizePin("abc"), "");
}

} // namespace
} // namespace tallybot::irc
