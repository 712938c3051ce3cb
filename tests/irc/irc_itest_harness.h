#pragma once
// The IRC control as the program runs it (core, Qt sockets, Qt clock, QFile sink) for the integration
// tests, with its host events recorded and a pane wait. The socket events pass through a counter so a test
// can tell one arrival from the next.

#include "irc/qt/dcc_file_sink.h"
#include "irc/qt/irc_socket.h"
#include "irc/qt/qt_irc_clock.h"
#include "irc/usc_irc.h"
#include "tests/support/qt_wait.h"

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

// Forwards every socket event to the core and counts server arrivals.
struct CountingEvents final : IrcSocketEvents {
    explicit CountingEvents(IrcSocketEvents& target) : core(target) {}
    IrcSocketEvents& core;
    int serverArrivals = 0;

    void OnServerConnected() override { core.OnServerConnected(); }
    void OnServerData(std::string_view bytes) override {
        ++serverArrivals;
        core.OnServerData(bytes);
    }
    void OnServerClosed() override { core.OnServerClosed(); }
    void OnServerError(int n, const std::string& d) override { core.OnServerError(n, d); }
    void OnIdentConnectionRequest(long id, int port) override { core.OnIdentConnectionRequest(id, port); }
    void OnIdentData(std::string_view bytes) override { core.OnIdentData(bytes); }
    void OnIdentError(int n, const std::string& d) override { core.OnIdentError(n, d); }
    void OnDccConnected() override { core.OnDccConnected(); }
    void OnDccData(std::string_view bytes) override { core.OnDccData(bytes); }
    void OnDccClosed() override { core.OnDccClosed(); }
    void OnDccError(int n, const std::string& d) override { core.OnDccError(n, d); }
};

struct UserCommandCall {
    std::string text, nick, user;
    bool operator==(const UserCommandCall&) const = default;
};

class IrcUnderTest {
public:
    IrcUnderTest() : core(sockets, clock, &questions, &files), counter(core) {
        sockets.SetEvents(&counter);
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
    IrcUnderTest(const IrcUnderTest&) = delete;
    IrcUnderTest& operator=(const IrcUnderTest&) = delete;

    void ConnectTo(const std::string& host, std::uint16_t port) {
        core.Properties().ServerAddress = host;
        core.Properties().ServerPort = port;
        core.Connect();
    }

    bool WaitForStatus(int status) {
        return testsupport::WaitUntil([&] { return core.ConnectStatus() == status; });
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
    bool WaitForPane(const std::string& exact) {
        return testsupport::WaitUntil([&] { return CountPane(exact) > 0; });
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

    QtIrcClock clock;
    IrcSocket sockets;
    ScriptedQuestions questions;
    QtDccFileSink files;
    uscIRC core;
    CountingEvents counter;

    std::vector<int> statuses;
    int disconnectedEvents = 0;
    std::vector<UserCommandCall> commands;
};

} // namespace tallybot::irc::itest
