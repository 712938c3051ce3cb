#pragma once
// The IRC control with the "Extras" session between core and sockets, as the program runs it, for
// the integration tests of TLS, SASL, reconnect, pacing and encoding. Options are read at each
// connect from `options`; the settings record's switches go through ExtrasOptionsFrom.

#include "base/extras_settings.h"
#include "irc/irc_extras_options.h"
#include "irc/qt/irc_session_sockets.h"
#include "irc/qt/qt_irc_clock.h"
#include "irc/usc_irc.h"
#include "tests/support/qt_wait.h"

#include <chrono>
#include <string>
#include <vector>

#include <QRegularExpression>
#include <QString>

namespace tallybot::irc::itest {

class ExtrasUnderTest {
public:
    ExtrasUnderTest() : sockets(clock), core(sockets.Transport(), clock) {
        sockets.Attach(&core, [this] { return ExtrasOptionsFrom(extras); });
        IrcProperties& p = core.Properties();
        p.Ident = false;
        p.Nick = "Tallybot";
        core.SetChannelName("#tally");
        core.Events().StatusChange = [this] { statuses.push_back(core.ConnectStatus()); };
        core.Events().Disconnected = [this] { ++disconnectedEvents; };
    }
    ~ExtrasUnderTest() { sockets.Attach(nullptr, {}); }
    ExtrasUnderTest(const ExtrasUnderTest&) = delete;
    ExtrasUnderTest& operator=(const ExtrasUnderTest&) = delete;

    void ConnectTo(const std::string& host, std::uint16_t port) {
        core.Properties().ServerAddress = host;
        core.Properties().ServerPort = port;
        core.Connect();
    }

    bool WaitForStatus(int status, std::chrono::milliseconds deadline = testsupport::kDefaultDeadline) {
        return testsupport::WaitUntil([&] { return core.ConnectStatus() == status; }, deadline);
    }

    std::string PaneText() const {
        std::string text;
        for (const PaneLine& line : core.PaneLines())
            text += line.PlainText() + "\n";
        return text;
    }
    int CountPane(const std::string& exact) const {
        int n = 0;
        for (const PaneLine& line : core.PaneLines())
            n += line.PlainText() == exact ? 1 : 0;
        return n;
    }
    bool WaitForPane(const std::string& exact, std::chrono::milliseconds deadline = testsupport::kDefaultDeadline) {
        return testsupport::WaitUntil([&] { return CountPane(exact) > 0; }, deadline);
    }
    bool WaitForPaneMatch(const std::string& pattern) {
        const QRegularExpression re(QString::fromStdString(pattern));
        return testsupport::WaitUntil([&] {
            for (const PaneLine& line : core.PaneLines()) {
                const std::string text = line.PlainText();
                if (re.match(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()))).hasMatch())
                    return true;
            }
            return false;
        });
    }

    base::ExtrasSettings extras;
    QtIrcClock clock;
    IrcSessionSockets sockets;
    uscIRC core;
    std::vector<int> statuses;
    int disconnectedEvents = 0;
};

} // namespace tallybot::irc::itest
