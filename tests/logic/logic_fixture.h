#pragma once
// MainLogic over fake IRC sockets, a standing clock and recorded timers, in a fresh home folder.

#include "app/logic/main_logic.h"
#include "base/vb_convert.h"
#include "tests/irc/fake_irc_transport.h"
#include "tests/support/local_time.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::app::test {

using tallybot::test::ReadBytes;
using tallybot::test::TempFolder;
using tallybot::test::WriteBytes;

class RecordingTimers : public MainTimers {
public:
    struct Call {
        MainTimer timer;
        bool enabled;
        int interval;
    };
    std::vector<Call> calls;
    void SetTimer(MainTimer timer, bool enabled, int interval) override { calls.push_back({timer, enabled, interval}); }
    // The last state set for a timer, or nothing.
    std::optional<Call> Last(MainTimer timer) const {
        for (auto it = calls.rbegin(); it != calls.rend(); ++it)
            if (it->timer == timer) return *it;
        return std::nullopt;
    }
};

class RecordingShell : public base::OperatorShell {
public:
    std::vector<std::string> messages;
    bool questionFails = false; // a question that raises an error instead of being answered
    void ShowMessage(const std::string& text, const std::string&) override { messages.push_back(text); }
    bool AskYesNo(const std::string& text, const std::string&) override {
        messages.push_back("?" + text);
        if (questionFails) throw vb::VbError(5, "Invalid procedure call or argument");
        return false;
    }
    void OpenExternal(const std::string&) override {}
};

// 03/04/26 05:06:07.000 local time, every time.
inline std::chrono::system_clock::time_point FixedTime() {
    return tallybot::test::LocalTime(2026, 3, 4, 5, 6, 7);
}

inline constexpr const char* kStamp = "03/04/26 05:06:07.000";

class LogicTest : public ::testing::Test {
protected:
    LogicTest() : logic(std::make_unique<MainLogic>(transport, clock)) { logic->SetTimers(&timers); }

    // Writes Tallybot.ini (when given) and runs start-up.
    void Start(const std::string& ini = "", const std::string& commandLine = "") {
        if (!ini.empty()) WriteBytes(home.File("Tallybot.ini"), ini);
        StartupOptions options;
        options.home = home.Slash();
        options.shell = &shell;
        options.clock = [] { return FixedTime(); };
        options.commandLine = commandLine;
        logic->Main(options);
    }

    // The IRC server accepts us, ends its MOTD and echoes our JOIN.
    void RegisterIrc() {
        logic->Irc().OnServerConnected();
        logic->Irc().OnServerData(":irc.test 376 Bot :End of MOTD\r\n");
        logic->Irc().OnServerData(":" + logic->Irc().Nick() + "!u@h JOIN :" + logic->Irc().ChannelName() + "\r\n");
    }

    static std::string IrcIni() {
        return "[IRC]\r\n1Server=irc.test\r\n1Port=6667\r\n1Channel=#chan\r\n1Nick=Bot\r\n"
               "2Server=old.test\r\n2Port=7000\r\n2Channel=#old\r\n2Nick=OldBot\r\n"
               "[Game]\r\n1Host=127.0.0.1:27960\r\nQueryTime=900\r\n";
    }

    TempFolder home;
    irc::testing::FakeTransport transport;
    irc::testing::FakeClock clock;
    RecordingTimers timers;
    RecordingShell shell;
    std::unique_ptr<MainLogic> logic;
};

} // namespace tallybot::app::test
