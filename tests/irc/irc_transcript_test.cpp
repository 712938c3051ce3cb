// The IRC control driven by scripts: each file under tests/data/irc/ holds cases of commands (a
// server line, a typed line, a socket event) and, indented below each command, everything the
// control did in answer: pane lines with their colour, events, bytes sent, sockets opened, questions
// asked, files written. The runner replays the commands and rebuilds the file; it must come out
// byte for byte as it is. TALLYBOT_WRITE_EXPECTED=1 writes the rebuilt file after a deliberate change.

#include "fake_irc_transport.h"
#include "tests/support/fixture_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

namespace fs = std::filesystem;
using testing::IrcRig;

fs::path ScriptFolder() {
    return test::SourceRoot() / "tests/data/irc";
}

// Bytes below 0x20, above 0x7E and the backslash are written as \xHH (\\ for the backslash).
std::string Escape(std::string_view bytes) {
    std::string out;
    for (unsigned char c : bytes) {
        if (c == '\\') {
            out += "\\\\";
        } else if (c < 0x20 || c > 0x7E) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

std::string Unescape(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') {
            out += '\\';
            ++i;
        } else if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

// Runs one case's commands on a fresh control and writes the commands with what each caused.
class TranscriptRunner {
public:
    std::string Run(const std::vector<std::string>& commands) {
        for (const std::string& command : commands) {
            m_out << command << "\n";
            Execute(command);
            if (command == "join") m_quiet = true; // the way in is pinned by its own cases
            Record();
            m_quiet = false;
        }
        return m_out.str();
    }

private:
    void Execute(const std::string& command) {
        const auto blank = command.find(' ');
        const std::string verb = command.substr(0, blank);
        const std::string arg = blank == std::string::npos ? "" : Unescape(command.substr(blank + 1));
        std::istringstream words(arg);
        auto& p = m_rig.irc.Properties();
        const std::map<std::string, std::function<void()>> verbs = {
            {"<", [&] { m_rig.Line(arg); }},
            {">", [&] { m_rig.irc.ProcessUserEntry(arg); }},
            {"enter", [&] { m_rig.irc.EnterInput(arg); }},
            {"click", [&] { m_rig.irc.ClickWord(arg); }},
            {"data", [&] { m_rig.irc.OnServerData(arg); }},
            {"join", [&] { m_rig.Join(); }},
            {"connect", [&] { m_rig.irc.Connect(); }},
            {"connected", [&] { m_rig.irc.OnServerConnected(); }},
            {"closed", [&] { m_rig.irc.OnServerClosed(); }},
            {"disconnect", [&] { m_rig.irc.Disconnect(arg); }},
            {"socket-state", [&] { m_rig.transport.serverState = std::stoi(arg); }},
            {"socket-error", [&] { m_rig.irc.OnServerError(std::stoi(arg), arg.substr(arg.find(' ') + 1)); }},
            {"ident-error", [&] { m_rig.irc.OnIdentError(std::stoi(arg), arg.substr(arg.find(' ') + 1)); }},
            {"ident-listening", [&] { m_rig.transport.identState = kSockListening; }},
            {"ident",
             [&] {
                 long id = 0;
                 int port = 0;
                 words >> id >> port;
                 m_rig.irc.OnIdentConnectionRequest(id, port);
             }},
            {"password", [&] { m_rig.irc.SetServerPassword(arg); }},
            {"compat", // the switches for present-day servers named after it
             [&] {
                 ServerCompat c;
                 for (std::string name; words >> name;) {
                     c.UserFromIdent |= name == "UserFromIdent";
                     c.ShowErrorNumerics |= name == "ShowErrorNumerics";
                     c.JoinAfter422 |= name == "JoinAfter422";
                     c.TrailingAfterPrefix |= name == "TrailingAfterPrefix";
                     c.NickFrom001 |= name == "NickFrom001";
                 }
                 m_rig.irc.SetCompat(c);
             }},
            {"send", [&] { m_rig.irc.SendToChannel(arg); }},
            {"notify", [&] { m_rig.irc.NotifyUser(arg.substr(0, arg.find(' ')), arg.substr(arg.find(' ') + 1)); }},
            {"raw", [&] { m_rig.irc.SendIRCData(arg); }},
            {"answer",
             [&] {
                 for (std::string a; words >> a;)
                     m_rig.questions.answers.push_back(a == "yes");
             }},
            {"file", [&] { m_rig.files.files[arg.substr(0, arg.find(' '))] = arg.substr(arg.find(' ') + 1); }},
            {"dcc-connected", [&] { m_rig.irc.OnDccConnected(); }},
            {"dcc-data", [&] { m_rig.irc.OnDccData(arg); }},
            {"dcc-closed", [&] { m_rig.irc.OnDccClosed(); }},
            {"set",
             [&] {
                 std::string name, value;
                 words >> name;
                 std::getline(words >> std::ws, value);
                 const std::map<std::string, std::function<void()>> props = {
                     {"ControlType", [&] { p.ControlType = std::stoi(value); }},
                     {"Nick", [&] { p.Nick = value; }},
                     {"ServerAddress", [&] { p.ServerAddress = value; }},
                     {"ServerPort", [&] { p.ServerPort = std::stoi(value); }},
                     {"IdentPort", [&] { p.IdentPort = std::stoi(value); }},
                     {"ShowPing", [&] { p.ShowPing = value == "1"; }},
                     {"EnableDCC", [&] { p.EnableDCC = value == "1"; }},
                     {"EnableTrigger", [&] { p.EnableTrigger = value == "1"; }},
                 };
                 ASSERT_TRUE(props.count(name)) << "unknown property " << name;
                 props.at(name)();
             }},
            {"users",
             [&] {
                 m_out << "  users";
                 for (const auto& e : m_rig.irc.Users().Entries())
                     m_out << " " << e.Shown();
                 m_out << "\n";
             }},
            {"status",
             [&] {
                 m_out << "  status " << m_rig.irc.ConnectStatus() << " nick " << m_rig.irc.Nick() << " host "
                       << m_rig.irc.OwnHost() << "\n";
             }},
        };
        ASSERT_TRUE(verbs.count(verb)) << "unknown command " << command;
        verbs.at(verb)();
    }

    // Everything new since the last command, in a fixed order.
    void Record() {
        std::ostringstream skipped;
        if (m_quiet) m_out.swap(skipped);
        RecordInto();
        if (m_quiet) m_out.swap(skipped);
    }

    void RecordInto() {
        const auto& pane = m_rig.irc.PaneLines();
        if (pane.size() < m_pane) m_pane = 0; // the pane was cleared
        for (; m_pane < pane.size(); ++m_pane) {
            const auto& line = pane[m_pane];
            m_out << "  pane " << (line.Runs.empty() ? -1 : line.Runs.front().Foreground) << " " << Escape(line.Raw)
                  << "\n";
        }
        Tail("event", m_rig.events, m_events);
        Tail("sent", m_rig.transport.sent, m_sent);
        Tail("asked", m_rig.questions.asked, m_asked);
        auto& t = m_rig.transport;
        for (; m_connects < t.connects.size(); ++m_connects)
            m_out << "  connect " << t.connects[m_connects].first << " " << t.connects[m_connects].second << "\n";
        for (; m_listens < t.listens.size(); ++m_listens)
            m_out << "  listen " << t.listens[m_listens] << "\n";
        for (; m_ident < t.identAnswers.size(); ++m_ident)
            m_out << "  ident-answer " << Escape(t.identAnswers[m_ident].second) << "\n";
        for (; m_dcc < t.dccConnects.size(); ++m_dcc)
            m_out << "  dcc-connect " << t.dccConnects[m_dcc].first << " " << t.dccConnects[m_dcc].second << "\n";
        if (t.dccSent.size() > m_dccSent) m_out << "  dcc-sent " << Escape(t.dccSent.substr(m_dccSent)) << "\n";
        m_dccSent = t.dccSent.size();
        if (t.dccCloses != m_dccCloses || t.serverCloses != m_serverCloses)
            m_out << "  closes server " << t.serverCloses << " dcc " << t.dccCloses << "\n";
        m_dccCloses = t.dccCloses;
        m_serverCloses = t.serverCloses;
        if (m_rig.questions.proposed != m_proposed) m_out << "  proposed " << m_rig.questions.proposed << "\n";
        m_proposed = m_rig.questions.proposed;
        if (m_rig.files.files != m_files) {
            m_out << "  files";
            for (const auto& [path, content] : m_rig.files.files)
                m_out << " " << path << "=" << Escape(content);
            m_out << "\n";
        }
        m_files = m_rig.files.files;
    }

    void Tail(const char* kind, std::vector<std::string>& all, std::size_t& seen) {
        if (all.size() < seen) seen = 0; // Join() clears the fakes' records
        for (; seen < all.size(); ++seen)
            m_out << "  " << kind << " " << Escape(all[seen]) << "\n";
    }

    IrcRig m_rig;
    std::ostringstream m_out;
    bool m_quiet = false;
    std::size_t m_pane = 0, m_events = 0, m_sent = 0, m_asked = 0, m_connects = 0, m_listens = 0, m_ident = 0,
                m_dcc = 0, m_dccSent = 0;
    int m_dccCloses = 0, m_serverCloses = 0;
    std::string m_proposed;
    std::map<std::string, std::string> m_files;
};

// Rebuilds a script: comments and case headers stay, commands run, indented lines are regenerated.
std::string Replay(const std::string& script) {
    std::istringstream in(script);
    std::string out;
    std::vector<std::string> commands;
    auto flush = [&] {
        if (!commands.empty()) out += TranscriptRunner().Run(commands);
        commands.clear();
    };
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("  ", 0) == 0) continue;
        if (line.empty() || line[0] == '#' || line.rfind("===", 0) == 0) {
            flush();
            out += line + "\n";
        } else {
            commands.push_back(line);
        }
    }
    flush();
    return out;
}

class IrcTranscriptTest : public ::testing::TestWithParam<std::string> {};

TEST_P(IrcTranscriptTest, ReplaysAsWritten) {
    const fs::path file = ScriptFolder() / GetParam();
    std::ifstream in(file, std::ios::binary);
    ASSERT_TRUE(in.good()) << file;
    const std::string script((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string replayed = Replay(script);
    if (std::getenv("TALLYBOT_WRITE_EXPECTED")) {
        std::ofstream(file, std::ios::binary) << replayed;
        return;
    }
    EXPECT_EQ(replayed, script);
}

std::vector<std::string> Scripts() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(ScriptFolder()))
        if (entry.path().extension() == ".script") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Scripts, IrcTranscriptTest, ::testing::ValuesIn(Scripts()), [](const auto& info) {
    std::string name = info.param.substr(0, info.param.find('.'));
    for (char& c : name)
        if (c == '-') c = '_';
    return name;
});

} // namespace
} // namespace tallybot::irc
