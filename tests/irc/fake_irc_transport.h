#pragma once
// Test doubles for the IRC core's seams: a transport that records what the core sends, a clock
// that stands still, scripted DCC answers and an in-memory file sink.

#include "irc/irc_transport.h"
#include "irc/usc_irc.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace tallybot::irc::testing {

class FakeTransport : public IrcTransport {
public:
    std::vector<std::string> sent; // each ServerSend call
    int serverState = kSockConnected;
    int identState = kSockClosed;
    std::vector<std::pair<std::string, int>> connects;
    std::vector<int> listens;
    std::vector<std::pair<long, std::string>> identAnswers;
    std::vector<std::pair<std::string, int>> dccConnects;
    std::string dccSent;
    int dccCloses = 0;
    int serverCloses = 0;
    std::string hostName = "tallyhost";
    int hostError = 0;

    void ServerConnect(const std::string& host, int port) override { connects.emplace_back(host, port); }
    void ServerSend(std::string_view bytes) override { sent.emplace_back(bytes); }
    void ServerClose() override {
        ++serverCloses;
        serverState = kSockClosed;
    }
    int ServerState() const override { return serverState; }
    std::string ServerLocalHostName() const override { return "localbox"; }
    std::string ServerRemoteHost() const override { return "irc.example.net"; }
    void IdentListen(int port) override {
        listens.push_back(port);
        identState = kSockListening;
    }
    int IdentState() const override { return identState; }
    void IdentAnswer(long requestId, std::string_view line) override {
        identAnswers.emplace_back(requestId, std::string(line));
        identState = kSockClosed;
    }
    void IdentClose() override { identState = kSockClosed; }
    void DccConnect(const std::string& address, int port) override { dccConnects.emplace_back(address, port); }
    void DccSend(std::string_view bytes) override { dccSent.append(bytes); }
    void DccClose() override { ++dccCloses; }
    std::string MachineHostName(int& errorCode) const override {
        errorCode = hostError;
        return hostName;
    }
    std::string ResolveIPv4(const std::string&) const override { return "192.168.1.5"; }

    std::string Last() const { return sent.empty() ? std::string() : sent.back(); }
};

class FakeClock : public IrcClock {
public:
    std::uint32_t ticks = 123456;
    LocalTime now{2026, 11, 22, 0, 9, 5, 7}; // Sun Nov 22 09:05:07 2026
    std::uint32_t TickCount() const override { return ticks; }
    LocalTime Now() const override { return now; }
    LocalTime FromEpoch(std::int64_t seconds) const override {
        // UTC is enough for the tests: days from civil, inverted.
        std::int64_t days = seconds / 86400;
        const std::int64_t rest = seconds % 86400;
        LocalTime t;
        t.Weekday = static_cast<int>((days + 4) % 7);
        days += 719468;
        const std::int64_t era = days / 146097;
        const std::int64_t doe = days - era * 146097;
        const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
        const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
        const std::int64_t mp = (5 * doy + 2) / 153;
        t.Day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
        t.Month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
        t.Year = static_cast<int>(yoe + era * 400 + (t.Month <= 2 ? 1 : 0));
        t.Hour = static_cast<int>(rest / 3600);
        t.Minute = static_cast<int>(rest % 3600 / 60);
        t.Second = static_cast<int>(rest % 60);
        return t;
    }
};

class ScriptedQuestions : public DccQuestions {
public:
    std::deque<bool> answers; // popped per question; no answer left means no
    std::optional<std::string> chosen = "/downloads/file.bin";
    std::vector<std::string> asked; // "title|text"
    std::string proposed;
    bool AskYesNo(const std::string& title, const std::string& text) override {
        asked.push_back(title + "|" + text);
        if (answers.empty()) return false;
        const bool a = answers.front();
        answers.pop_front();
        return a;
    }
    std::optional<std::string> ChooseSaveFile(const std::string&, const std::string& proposedName) override {
        proposed = proposedName;
        return chosen;
    }
};

class MemoryFiles : public DccFileSink {
public:
    std::map<std::string, std::string> files;
    std::string open;
    bool closed = true;
    std::optional<std::uint64_t> FileLength(const std::string& path) override {
        auto it = files.find(path);
        if (it == files.end()) return std::nullopt;
        return it->second.size();
    }
    bool Remove(const std::string& path) override { return files.erase(path) > 0; }
    bool Open(const std::string& path, bool append) override {
        if (!append) files[path].clear();
        open = path;
        closed = false;
        return true;
    }
    bool Write(std::string_view bytes) override {
        files[open].append(bytes);
        return true;
    }
    void Close() override { closed = true; }
};

// A control wired to the fakes, with every pane line's raw text and every event collected.
struct IrcRig {
    FakeTransport transport;
    FakeClock clock;
    ScriptedQuestions questions;
    MemoryFiles files;
    uscIRC irc{transport, clock, &questions, &files};
    std::vector<std::string> events;

    IrcRig() {
        auto& e = irc.Events();
        e.StatusChange = [this] { events.push_back("StatusChange " + std::to_string(irc.ConnectStatus())); };
        e.UserJoin = [this](const std::string& n) { events.push_back("UserJoin " + n); };
        e.UserModeChange = [this](const std::string& m, const std::string& t) {
            events.push_back("UserModeChange " + m + " " + t);
        };
        e.UserNameChange = [this](const std::string& a, const std::string& b) {
            events.push_back("UserNameChange " + a + " " + b);
        };
        e.UserLeave = [this](const std::string& n, int r) {
            events.push_back("UserLeave " + n + " " + std::to_string(r));
        };
        e.UserCommand = [this](const std::string& t, const std::string& n, const std::string& u) {
            events.push_back("UserCommand " + t + "|" + n + "|" + u);
        };
        e.Disconnected = [this] { events.push_back("Disconnected"); };
        e.DCCRequest = [this](const std::string& n, const std::string& f, const std::string& a, long p, double s) {
            events.push_back("DCCRequest " + n + " " + f + " " + a + " " + std::to_string(p) + " " +
                             std::to_string(static_cast<long long>(s)));
        };
        e.DCCTransfer = [this](const std::string& f, std::uint64_t pos, std::uint64_t size) {
            events.push_back("DCCTransfer " + f + " " + std::to_string(pos) + " " + std::to_string(size));
        };
    }

    std::string LastPane() const { return irc.PaneLines().empty() ? std::string() : irc.PaneLines().back().Raw; }
    Colour LastColour() const {
        const auto& lines = irc.PaneLines();
        return lines.empty() || lines.back().Runs.empty() ? -1 : lines.back().Runs.front().Foreground;
    }
    void Line(const std::string& line) { irc.HandleLine(line + "\r\n"); }
    // Brings the control to state 3 as a real server would.
    void Join() {
        irc.Connect();
        Line(":srv 376 Corvamo :End of MOTD");
        Line(":Corvamo!kavik@my.host JOIN :#Zephra");
        transport.sent.clear();
        events.clear();
    }
};

} // namespace tallybot::irc::testing
