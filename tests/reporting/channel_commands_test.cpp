#include "reporting/channel_commands.h"
#include "tests/reporting/reporting_fixture.h"

#include <functional>

namespace tallybot::reporting::test {
namespace {

class ChannelCommandsTest : public ReportingTest {
protected:
    ChannelCommandsTest() {
        AddPlayer("kavik", 4, 10, 1);
        state.SendDelayRunning = false; // start-up delay over, unless a test says otherwise
    }
    void Request(const std::string& line) {
        channel.lines.clear();
        pane.lines.clear();
        rep.Commands.ircMain_UserCommand(line, "joe", "joe@example.org");
    }
    std::string Logged() const {
        return pane.lines.size() == 1 && pane.lines[0].second == 255 ? pane.lines[0].first : "<not one system line>";
    }
};

// Which post answers is seen from its line count and first line; the posts' lines are tested with the posts.
TEST_F(ChannelCommandsTest, EachCommandRunsItsPost) {
    const struct {
        const char* line;
        std::size_t lines;
        const char* firstStart;
    } cases[] = {
        {"!info", 3, "Sending delay"}, {"!about", 2, "Welcome"}, {"!sinfo", 3, "Host:"},
        {"!pinfo", 1, "Players: "},    {"!tinfo", 3, ""},        {"!ssinfo anything", 1, "Hostname:"},
        {"!spinfo", 1, "Players: "},   {"!stinfo", 3, ""},       {"!cust", 1, "custom"},
    };
    Profile().Message = E + "custom";
    for (const auto& c : cases) {
        state.SendDelayRunning = false;
        Request(c.line);
        ASSERT_EQ(channel.lines.size(), c.lines) << c.line;
        if (*c.firstStart) {
            EXPECT_EQ(channel.lines[0].rfind(E + c.firstStart, 0), 0u) << c.line;
        }
        const std::string word = std::string(c.line).substr(0, std::string(c.line).find(' '));
        EXPECT_EQ(Logged(), "[SYSTEM] joe requested " + word + " -> sent.");
        EXPECT_TRUE(state.SendDelayRunning);
    }
}

TEST_F(ChannelCommandsTest, OutcomesAndWhetherTheDelayStarts) {
    const struct {
        std::function<void(app::AppSettings&)> setUp;
        const char* line;
        const char* outcome;
        bool posted;
        bool delayStarts;
    } cases[] = {
        {[](auto&) {}, "!INFO", " -> ignored (command unknown).", false, true},
        {[](auto& s) { s.AllowTeamInfo = 0; }, "!tinfo", " -> ignored (not allowed).", false, true},
        {[](auto& s) { s.AllowServInfo = 2; }, "!sinfo", " -> ignored (not allowed).", false, true},
        {[](auto& s) { s.AllowUserComm = 0; }, "!sinfo", " -> ignored (not allowed).", true, true},
        {[](auto& s) { s.AllowUserComm = 0; }, "!nope", " -> ignored (not allowed).", false, true},
        {[](auto& s) { s.CommandParameter = 1; }, "!info Bot1", " -> sent.", true, true},
        {[](auto& s) { s.CommandParameter = 1; }, "!info bot1", " -> ignored (wrong instance).", false, false},
        {[](auto& s) { s.CommandParameter = 1; }, "!info  Bot1", " -> ignored (wrong instance).", false, false},
        {[](auto& s) { s.CommandParameter = 1; }, "!info", " -> ignored (no instance specified).", false, false},
        {[](auto& s) { s.CommandParameter = 1; }, "!nope", " -> ignored (no instance specified).", false, false},
    };
    for (const auto& c : cases) {
        settings = app::AppSettings{};
        settings.ConnState = 3;
        settings.Profiles.CurrentProfile = 1;
        c.setUp(settings);
        state.SendDelayRunning = false;
        Request(c.line);
        const std::string word = std::string(c.line).substr(0, std::string(c.line).find(' '));
        EXPECT_EQ(Logged(), "[SYSTEM] joe requested " + word + c.outcome) << c.line;
        EXPECT_EQ(!channel.lines.empty(), c.posted) << c.line;
        EXPECT_EQ(state.SendDelayRunning, c.delayStarts) << c.line;
    }
}

TEST_F(ChannelCommandsTest, SendDelayRunsFromStartUp) {
    ReportingState fresh;
    state = fresh;
    Request("!info");
    EXPECT_EQ(Logged(), "[SYSTEM] joe requested !info -> ignored (spam protection).");
    EXPECT_TRUE(channel.lines.empty());
    for (int i = 1; i < 10; ++i)
        rep.Commands.tmrIRCSendDelay_Timer();
    EXPECT_TRUE(rep.Commands.SendDelayRunning());
    rep.Commands.tmrIRCSendDelay_Timer();
    EXPECT_FALSE(rep.Commands.SendDelayRunning());
    EXPECT_EQ(state.SendDelayTicks, 0);
    Request("!info");
    EXPECT_EQ(Logged(), "[SYSTEM] joe requested !info -> sent.");
}

TEST_F(ChannelCommandsTest, RefusedRequestDoesNotExtendTheDelay) {
    settings.SendDelay = 3;
    Request("!info");
    rep.Commands.tmrIRCSendDelay_Timer();
    rep.Commands.tmrIRCSendDelay_Timer();
    Request("!info");
    EXPECT_EQ(Logged(), "[SYSTEM] joe requested !info -> ignored (spam protection).");
    rep.Commands.tmrIRCSendDelay_Timer();
    EXPECT_FALSE(rep.Commands.SendDelayRunning());

    settings.SendDelay = 0; // still refuses until the first tick
    Request("!info");
    EXPECT_TRUE(rep.Commands.SendDelayRunning());
    rep.Commands.tmrIRCSendDelay_Timer();
    EXPECT_FALSE(rep.Commands.SendDelayRunning());
}

TEST_F(ChannelCommandsTest, WelcomeNoticeAndOnJoinMessage) {
    settings.NoticeMsg = "Hi, map $ic$%map%";
    settings.OnJoinMessage = "Tallybot on %sna%";
    rep.Commands.ircMain_UserJoin("joe");
    rep.Commands.PostOnJoinMessage();
    EXPECT_TRUE(channel.notices.empty());
    EXPECT_TRUE(channel.lines.empty());

    settings.NoticeEnabled = 1;
    settings.OnJoinEnabled = 1;
    rep.Commands.ircMain_UserJoin("joe");
    rep.Commands.PostOnJoinMessage();
    using Notice = std::pair<std::string, std::string>;
    EXPECT_EQ(channel.notices, (std::vector<Notice>{{"joe", "Hi, map " + I + "q3wctf1"}}));
    EXPECT_EQ(Logged(), "[SYSTEM] Sent welcome notice to joe");
    EXPECT_EQ(channel.lines, std::vector<std::string>{"Tallybot on Zephra"});
}

} // namespace
} // namespace tallybot::reporting::test
