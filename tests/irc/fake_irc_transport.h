#pragma once
// Test doubles for the IRC core's seams: a transport that records what the core sends and a clock
// that stands still.

#include "irc/irc_transport.h"
#include "irc/usc_irc.h" // for the tests that build a control on these

#include <ctime>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallybot::irc::testing {

class FakeTransport : public IrcTransport {
public:
    std::vector<std::string> sent; // each ServerSend call
    int serverState = kSockConnected;
    int identState = kSockClosed;
    std::vector<std::pair<std::string, int>> connects, dccConnects;
    std::vector<int> listens;
    std::vector<std::pair<long, std::string>> identAnswers;
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

// Local time is UTC here.
class FakeClock : public IrcClock {
public:
    std::uint32_t ticks = 123456;
    LocalTime now{2026, 11, 22, 0, 9, 5, 7}; // Sun Nov 22 09:05:07 2026
    std::uint32_t TickCount() const override { return ticks; }
    LocalTime Now() const override { return now; }
    LocalTime FromEpoch(std::int64_t seconds) const override {
        const std::time_t time = seconds;
        std::tm u{};
        gmtime_r(&time, &u);
        return {u.tm_year + 1900, u.tm_mon + 1, u.tm_mday, u.tm_wday, u.tm_hour, u.tm_min, u.tm_sec};
    }
};

// Answers questions from a queue and saves every file to the same path.
struct ScriptedQuestions : DccQuestions {
    std::deque<bool> answers;       // popped per question; no answer left means no
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
        return "/downloads/file.bin";
    }
};

// Files held in memory by path.
struct MemoryFiles : DccFileSink {
    std::map<std::string, std::string> files;
    std::string open;
    std::optional<std::uint64_t> FileLength(const std::string& path) override {
        auto it = files.find(path);
        return it == files.end() ? std::nullopt : std::optional<std::uint64_t>(it->second.size());
    }
    bool Remove(const std::string& path) override { return files.erase(path) > 0; }
    bool Open(const std::string& path, bool append) override {
        if (!append) files[path].clear();
        open = path;
        return true;
    }
    bool Write(std::string_view bytes) override {
        files[open].append(bytes);
        return true;
    }
    void Close() override {}
};

// Brings a control to state 3 as a real server would.
inline void JoinAsServerWould(uscIRC& irc) {
    irc.Connect();
    irc.HandleLine(":srv 376 Corvamo :End of MOTD\r\n");
    irc.HandleLine(":Corvamo!kavik@my.host JOIN :#Zephra\r\n");
}

} // namespace tallybot::irc::testing
