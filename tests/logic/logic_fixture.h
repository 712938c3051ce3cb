#pragma once
// MainLogic over fake IRC sockets, a standing clock and recorded timers, in a fresh home folder.

#include "app/logic/main_logic.h"
#include "base/vb_convert.h"
#include "irc/irc_session.h"
#include "tests/irc/fake_irc_transport.h"
#include "tests/support/local_time.h"
#include "tests/support/temp_folder.h"

#include <memory>
#include <string>
#include <vector>

namespace tallybot::app::test {

struct RecordingTimers : MainTimers {
    std::vector<std::string> calls; // "IRCPost on 1000"
    void SetTimer(MainTimer timer, bool enabled, int interval) override {
        static const char* const names[] = {"GamQuery", "IRCPost", "IRCSendDelay"};
        calls.push_back(std::string(names[static_cast<int>(timer)]) + (enabled ? " on " : " off ") +
                        std::to_string(interval));
    }
};

struct RecordingShell : base::OperatorShell {
    std::vector<std::string> messages; // questions start with "?"
    bool questionFails = false;        // a question raises an error instead of being answered
    void ShowMessage(const std::string& text, const std::string&) override { messages.push_back(text); }
    bool AskYesNo(const std::string& text, const std::string&) override {
        messages.push_back("?" + text);
        if (questionFails) throw vb::VbError(5, "Invalid procedure call or argument");
        return false;
    }
    void OpenExternal(const std::string&) override {}
};

// The logic and its fakes. With a session the logic talks to the Extras session (reconnects)
// instead of straight to the fake sockets.
struct LogicRig {
    explicit LogicRig(bool withSession = false) {
        if (withSession) session = std::make_unique<irc::IrcSession>(transport, clock);
        logic = std::make_unique<MainLogic>(session ? static_cast<irc::IrcTransport&>(*session) : transport, clock);
        logic->SetTimers(&timers);
        if (!session) return;
        session->Attach(&logic->Irc());
        session->SetOptionsSource([this] { return irc::ExtrasOptionsFrom(logic->Settings().Extras); });
    }
    ~LogicRig() {
        if (session) session->Attach(nullptr);
    }

    // Runs start-up at 03/04/26 05:06:07 local time.
    void Start(const std::string& commandLine = "") {
        StartupOptions options;
        options.home = home.Slash();
        options.shell = &shell;
        options.clock = [] { return tallybot::test::LocalTime(2026, 3, 4, 5, 6, 7); };
        options.commandLine = commandLine;
        logic->Main(options);
    }

    // The IRC server accepts us, ends its MOTD and echoes our JOIN.
    void RegisterIrc() {
        logic->Irc().OnServerConnected();
        logic->Irc().OnServerData(":irc.test 376 Bot :End of MOTD\r\n");
        logic->Irc().OnServerData(":" + logic->Irc().Nick() + "!u@h JOIN :" + logic->Irc().ChannelName() + "\r\n");
    }

    tallybot::test::TempFolder home;
    irc::testing::FakeTransport transport;
    irc::testing::FakeClock clock;
    RecordingTimers timers;
    RecordingShell shell;
    std::unique_ptr<irc::IrcSession> session;
    std::unique_ptr<MainLogic> logic;
};

} // namespace tallybot::app::test
