#pragma once
// The IRC control as the program runs it, for the integration tests: the core behind the [Extras]
// session and the Qt sockets, with the Qt clock and a real file sink for DCC. The session reads its
// options from `extras` at each connect (all off: the classic behaviour). Host events are recorded,
// DCC questions answered from a script, and server arrivals counted so a test can tell one from the
// next.

#include "base/extras_settings.h"
#include "irc/irc_extras_options.h"
#include "irc/qt/dcc_file_sink.h"
#include "irc/qt/irc_session_sockets.h"
#include "irc/qt/qt_irc_clock.h"
#include "irc/usc_irc.h"
#include "tests/support/qt_wait.h"

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <QRegularExpression>
#include <QString>

namespace tallybot::irc::itest {

// Scripted answers to the DCC dialogs: yes/no answers in order (no when they run out), one save path.
struct ScriptedQuestions final : DccQuestions {
    std::deque<bool> answers;
    std::optional<std::string> savePath;
    std::vector<std::string> asked; // titles, in order

    bool AskYesNo(const std::string& title, const std::string&) override {
        asked.push_back(title);
        if (answers.empty()) return false;
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::optional<std::string> ChooseSaveFile(const std::string& title, const std::string&) override {
        asked.push_back(title);
        return savePath;
    }
};

// Sits between the sockets and the session, counting server arrivals.
struct CountingEvents final : IrcSocketEvents {
    explicit CountingEvents(IrcSocketEvents& target) : next(target) {}
    IrcSocketEvents& next;
    int serverArrivals = 0;

    void OnServerConnected() override { next.OnServerConnected(); }
    void OnServerData(std::string_view bytes) override {
        ++serverArrivals;
        next.OnServerData(bytes);
    }
    void OnServerClosed() override { next.OnServerClosed(); }
    void OnServerError(int n, const std::string& d) override { next.OnServerError(n, d); }
    void OnIdentConnectionRequest(long id, int port) override { next.OnIdentConnectionRequest(id, port); }
    void OnIdentData(std::string_view bytes) override { next.OnIdentData(bytes); }
    void OnIdentError(int n, const std::string& d) override { next.OnIdentError(n, d); }
    void OnDccConnected() override { next.OnDccConnected(); }
    void OnDccData(std::string_view bytes) override { next.OnDccData(bytes); }
    void OnDccClosed() override { next.OnDccClosed(); }
    void OnDccError(int n, const std::string& d) override { next.OnDccError(n, d); }
};

struct UserCommandCall {
    std::string text, nick, user;
    bool operator==(const UserCommandCall&) const = default;
};

class IrcUnderTest {
public:
    IrcUnderTest() : sockets(clock), core(sockets.Transport(), clock, &questions, &files), counter(sockets.Session()) {
        sockets.Attach(&core, [this] { return ExtrasOptionsFrom(extras); });
        sockets.Sockets().SetEvents(&counter);
        IrcProperties& p = core.Properties();
        p.Ident = false;
        p.Nick = "Tallybot";
        core.SetChannelName("#tally");
        core.Events().StatusChange = [this] { statuses.push_back(core.ConnectStatus()); };
        core.Events().Disconnected = [this] { ++disconnectedEvents; };
        core.Events().UserCommand = [this](const std::string& t, const std::string& n, const std::string& u) {
            commands.push_back({t, n, u});
        };
    }
    ~IrcUnderTest() {
        sockets.Sockets().SetEvents(&sockets.Session());
        sockets.Attach(nullptr, {});
    }
    IrcUnderTest(const IrcUnderTest&) = delete;
    IrcUnderTest& operator=(const IrcUnderTest&) = delete;

    void ConnectTo(const std::string& host, std::uint16_t port) {
        core.Properties().ServerAddress = host;
        core.Properties().ServerPort = port;
        core.Connect();
    }
    IrcSocket& Socket() { return sockets.Sockets(); }

    bool WaitForStatus(int status, std::chrono::milliseconds deadline = testsupport::kDefaultDeadline) {
        return testsupport::WaitUntil([&] { return core.ConnectStatus() == status; }, deadline);
    }

    // The pane's visible text, one line each.
    std::vector<std::string> Pane() const {
        std::vector<std::string> lines;
        for (const PaneLine& line : core.PaneLines())
            lines.push_back(line.PlainText());
        return lines;
    }
    std::string PaneText() const {
        std::string text;
        for (const std::string& line : Pane())
            text += line + "\n";
        return text;
    }
    int CountPane(const std::string& exact) const {
        int n = 0;
        for (const std::string& line : Pane())
            n += line == exact ? 1 : 0;
        return n;
    }
    bool WaitForPane(const std::string& exact, std::chrono::milliseconds deadline = testsupport::kDefaultDeadline) {
        return testsupport::WaitUntil([&] { return CountPane(exact) > 0; }, deadline);
    }
    bool WaitForPaneMatch(const std::string& pattern) {
        const QRegularExpression re(QString::fromStdString(pattern));
        return testsupport::WaitUntil([&] {
            for (const std::string& line : Pane())
                if (re.match(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size()))).hasMatch())
                    return true;
            return false;
        });
    }

    base::ExtrasSettings extras;
    QtIrcClock clock;
    IrcSessionSockets sockets;
    ScriptedQuestions questions;
    QtDccFileSink files;
    uscIRC core;
    CountingEvents counter;

    std::vector<int> statuses;
    int disconnectedEvents = 0;
    std::vector<UserCommandCall> commands;
};

} // namespace tallybot::irc::itest
