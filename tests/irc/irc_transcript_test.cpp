// The IRC core driven by scripts: each file under tests/data/irc/ holds cases of commands (a server
// line, a typed line, a socket event, a tick of the clock, or a call of one of the core's parts)
// and, indented below each command, everything it caused: pane lines with their colour, events,
// bytes sent, sockets opened, questions asked, files written, results. The control sits behind the
// session, as in the program. The runner replays the commands and rebuilds the file; it must come
// out byte for byte as it is. TALLYBOT_WRITE_EXPECTED=1 writes the rebuilt file after a deliberate
// change.

#include "base/extras_settings.h"
#include "fake_irc_transport.h"
#include "irc/dcc_receive.h"
#include "irc/irc_extras_options.h"
#include "irc/irc_framing.h"
#include "irc/irc_line.h"
#include "irc/irc_session.h"
#include "irc/irc_wire.h"
#include "irc/pane_model.h"
#include "irc/pane_words.h"
#include "irc/usc_irc.h"
#include "tests/support/fixture_file.h"
#include "tests/support/script_replay.h"

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

std::string EscapeByte(unsigned char c) {
    if (c == '\\') return "\\\\";
    if (c >= 0x20 && c <= 0x7E) return std::string(1, static_cast<char>(c));
    char hex[5];
    std::snprintf(hex, sizeof hex, "\\x%02X", c);
    return hex;
}

// Bytes below 0x20, above 0x7E and the backslash are written as \xHH (\\ for the backslash), a run
// of sixteen or more equal bytes as \{count} and the byte; long results as their length and end.
std::string Escape(std::string_view bytes) {
    std::string out;
    for (std::size_t i = 0, n = 1; i < bytes.size(); i += n) {
        for (n = 1; i + n < bytes.size() && bytes[i + n] == bytes[i];)
            ++n;
        if (n < 16) n = 1;
        out += (n > 1 ? "\\{" + std::to_string(n) + "}" : "") + EscapeByte(static_cast<unsigned char>(bytes[i]));
    }
    if (out.size() <= 200) return out;
    return std::to_string(bytes.size()) + " bytes ending " + Escape(bytes.substr(bytes.size() - 8));
}

std::string Unescape(std::string_view text) {
    std::string out;
    std::size_t repeat = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string one(1, text[i]);
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '{') {
            const auto close = text.find('}', i);
            repeat = std::stoul(std::string(text.substr(i + 2, close - i - 2)));
            i = close;
            continue;
        }
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') {
            ++i;
        } else if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            one = static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        }
        for (; repeat > 0; --repeat)
            out += one;
        repeat = 1;
    }
    return out;
}

// Runs one case's commands on a fresh control and writes the commands with what each caused.
class TranscriptRunner {
public:
    TranscriptRunner() {
        m_session.Attach(&m_irc);
        m_session.SetOptionsSource([this] { return ExtrasOptionsFrom(m_extras); });
        m_session.SetWakeup([this](std::uint32_t ms) { m_notes.push_back("wakeup " + std::to_string(ms)); });
        m_session.SetBeforeConnect([this](const IrcExtrasOptions& o) {
            if (o.Tls.Enabled)
                m_notes.push_back("tls verify " + std::to_string(o.Tls.Verify) +
                                  (o.Tls.PinSha256.empty() ? "" : " pin " + o.Tls.PinSha256));
        });
        auto& e = m_irc.Events();
        e.StatusChange = [this] { Event("StatusChange", m_irc.ConnectStatus()); };
        e.UserJoin = [this](const std::string& n) { Event("UserJoin", n); };
        e.UserModeChange = [this](const std::string& m, const std::string& t) { Event("UserModeChange", m, t); };
        e.UserNameChange = [this](const std::string& a, const std::string& b) { Event("UserNameChange", a, b); };
        e.UserLeave = [this](const std::string& n, int r) { Event("UserLeave", n, r); };
        e.UserCommand = [this](const std::string& t, const std::string& n, const std::string& u) {
            m_events.push_back("UserCommand " + t + "|" + n + "|" + u);
        };
        e.Disconnected = [this] { Event("Disconnected"); };
        e.DCCRequest = [this](const std::string& n, const std::string& f, const std::string& a, long p, double s) {
            Event("DCCRequest", n, f, a, p, static_cast<long long>(s));
        };
        e.DCCTransfer = [this](const std::string& f, std::uint64_t pos, std::uint64_t size) {
            Event("DCCTransfer", f, pos, size);
        };
        m_irc.View().UserListChanged = [this] { Event("UserListChanged"); }; // the window redraws its list
    }

    std::string Run(const std::vector<std::string>& commands) {
        for (const std::string& command : commands) {
            m_out << command << "\n";
            m_quiet = command == "join" || command.rfind("repeat ", 0) == 0; // pinned by their own cases
            Execute(command);
            Record();
        }
        return m_out.str();
    }

private:
    template <typename... T> void Event(const char* name, const T&... values) {
        std::ostringstream text;
        text << name;
        ((text << " " << values), ...);
        m_events.push_back(text.str());
    }
    void Result(const std::string& kind, const std::string& value) {
        m_out << "  " << kind << (value.empty() ? "" : " ") << value << "\n";
    }

    // Brings the control to state 3 as a real server would.
    void Join() {
        m_irc.Connect();
        Line(":srv 376 Corvamo :End of MOTD");
        Line(":Corvamo!kavik@my.host JOIN :#Zephra");
    }
    void Line(const std::string& line) { m_session.OnServerData(line + "\r\n"); }

    void Execute(const std::string& command) {
        const auto blank = command.find(' ');
        std::string verb = command.substr(0, blank);
        std::string arg = blank == std::string::npos ? "" : Unescape(command.substr(blank + 1));
        if (const auto star = verb.find('*'); star != std::string::npos) { // verb*N: the argument N times
            std::string once = arg;
            for (int n = std::stoi(verb.substr(star + 1)); n > 1; --n)
                arg += once;
            verb.resize(star);
        }
        std::istringstream words(arg);
        const auto word = [&words] {
            std::string w;
            words >> w;
            return w;
        };
        const auto rest = [&] { return arg.substr(arg.find(' ') + 1); };
        auto& p = m_irc.Properties();
        auto& t = m_transport;
        const std::map<std::string, std::function<void()>> verbs = {
            {"<", [&] { Line(arg); }},
            {">", [&] { m_irc.ProcessUserEntry(arg); }},
            {"enter", [&] { m_irc.EnterInput(arg); }},
            {"click", [&] { m_irc.ClickWord(arg); }},
            {"data", [&] { m_session.OnServerData(arg); }},
            {"join", [&] { Join(); }},
            {"connect", [&] { m_irc.Connect(); }},
            {"connected", [&] { m_session.OnServerConnected(); }},
            {"closed", [&] { m_session.OnServerClosed(); }},
            {"disconnect", [&] { m_irc.Disconnect(arg); }},
            {"tick",
             [&] {
                 m_clock.ticks += static_cast<std::uint32_t>(std::stoul(arg));
                 m_session.Tick();
             }},
            {"socket-state", [&] { t.serverState = std::stoi(arg); }},
            {"socket-error", [&] { m_session.OnServerError(std::stoi(arg), rest()); }},
            {"ident-error", [&] { m_irc.OnIdentError(std::stoi(arg), rest()); }},
            {"ident-listening", [&] { t.identState = kSockListening; }},
            {"ident",
             [&] {
                 const long id = std::stol(word());
                 m_irc.OnIdentConnectionRequest(id, std::stoi(word()));
             }},
            {"clock",
             [&] {
                 LocalTime& n = m_clock.now;
                 for (int* field : {&n.Year, &n.Month, &n.Day, &n.Weekday, &n.Hour, &n.Minute, &n.Second})
                     *field = std::stoi(word());
             }},
            {"password", [&] { m_irc.SetServerPassword(arg); }},
            {"extras", [&] { SetExtras(words); }},
            {"send", [&] { m_irc.SendToChannel(arg); }},
            {"notify", [&] { m_irc.NotifyUser(arg.substr(0, arg.find(' ')), rest()); }},
            {"raw", [&] { m_irc.SendIRCData(arg); }},
            {"add", [&] { m_irc.AddText(arg, 255); }},
            {"answer",
             [&] {
                 for (std::string a; words >> a;)
                     m_questions.answers.push_back(a == "yes");
             }},
            {"file", [&] { m_files.files[arg.substr(0, arg.find(' '))] = rest(); }},
            {"dcc-connected", [&] { m_irc.OnDccConnected(); }},
            {"dcc-data", [&] { m_irc.OnDccData(arg); }},
            {"dcc-closed", [&] { m_irc.OnDccClosed(); }},
            {"repeat",
             [&] {
                 for (int n = std::stoi(word()); n > 0; --n)
                     Execute(rest());
             }},
            {"set",
             [&] {
                 const std::string name = word();
                 const std::string value = rest();
                 const std::map<std::string, std::function<void()>> props = {
                     {"ControlType", [&] { p.ControlType = std::stoi(value); }},
                     {"Nick", [&] { p.Nick = value; }},
                     {"ServerAddress", [&] { p.ServerAddress = value; }},
                     {"ServerPort", [&] { p.ServerPort = std::stoi(value); }},
                     {"IdentPort", [&] { p.IdentPort = std::stoi(value); }},
                     {"ShowPing", [&] { p.ShowPing = value == "1"; }},
                     {"EnableDCC", [&] { p.EnableDCC = value == "1"; }},
                     {"EnableTrigger", [&] { p.EnableTrigger = value == "1"; }},
                     {"TimeStamp", [&] { p.TimeStamp = value == "1"; }},
                 };
                 ASSERT_TRUE(props.count(name)) << "unknown property " << name;
                 props.at(name)();
             }},
            {"users",
             [&] {
                 m_out << "  users";
                 for (const auto& e : m_irc.Users().Entries())
                     m_out << " " << e.Shown();
                 m_out << "\n";
             }},
            {"status",
             [&] {
                 Result("status",
                        std::to_string(m_irc.ConnectStatus()) + " nick " + m_irc.Nick() + " host " + m_irc.OwnHost());
             }},
            {"pane-lines", [&] { Result("pane-lines", std::to_string(m_irc.PaneLines().size())); }},
            {"channel",
             [&] {
                 m_irc.SetChannelName(arg);
                 Result("channel", m_irc.ChannelName());
             }},
            {"host-error",
             [&] {
                 t.hostName.clear();
                 t.hostError = std::stoi(arg);
             }},
            {"ip-address", [&] { Result("ip-address", Escape(m_irc.GetIPAddress())); }},
            {"ip",
             [&] {
                 const double address = uscIRC::Dotted2LongIP(arg);
                 Result("ip", std::to_string(static_cast<long long>(address)) + " " + uscIRC::LongIP2Dotted(address));
             }},
            // The parts of the core on their own.
            {"frame",
             [&] {
                 const LineFramer::Result r = m_framer.Feed(arg);
                 for (const std::string& line : r.Lines)
                     if (r.Lines.size() <= 4) Result("line", Escape(line));
                 if (r.Lines.size() > 4)
                     Result("lines", std::to_string(r.Lines.size()) + ", the last " + Escape(r.Lines.back()));
                 if (r.Overflow) Result("overflow", "");
                 if (!m_framer.Carry().empty()) Result("carry", Escape(m_framer.Carry()));
             }},
            {"wire", [&] { Result("wire", Escape(WireLine(arg))); }},
            {"encode",
             [&] {
                 Result("utf8", Escape(EncodeWireLine(arg, IrcEncoding::Utf8)));
                 if (EncodeWireLine(arg, IrcEncoding::Latin1) != arg) Result("latin1", "changed");
             }},
            {"decode",
             [&] {
                 if (const std::string text = m_decoder.Feed(arg); !text.empty()) Result("decoded", Escape(text));
             }},
            {"runs",
             [&] {
                 for (const PaneRun& run : BuildPaneLine(arg, 0x660000).Runs) {
                     char colours[32];
                     std::snprintf(colours, sizeof colours, run.Background ? "%06X on %06X" : "%06X", run.Foreground,
                                   run.Background.value_or(0));
                     Result("run", colours + std::string(run.Bold ? " bold" : "") +
                                       (run.Underline ? " underline" : "") + " " + Escape(run.Text));
                 }
             }},
            {"word",
             [&] {
                 const std::string w = WordAt(rest(), std::stoul(word()));
                 const char* kinds[] = {"plain", "link", "channel", "server"};
                 Result("word", w + " " + kinds[static_cast<int>(ClassifyWord(w))]);
             }},
            {"parse",
             [&] {
                 const IrcLine l = ParseIrcLine(arg);
                 Result("prefix", l.Prefix + " nick " + l.Nick + " user " + l.User + " host " + l.Host + " full " +
                                      std::to_string(l.FullPrefix()) + " trailing " + Escape(l.Trailing));
                 m_out << "  words";
                 int last = IrcLine::kWords;
                 while (last > 0 && l.W[static_cast<std::size_t>(last)].empty())
                     --last;
                 for (int k = 1; k <= last; ++k)
                     m_out << " " << k << "=" << Escape(l.W[static_cast<std::size_t>(k)]);
                 m_out << "\n";
             }},
            {"history",
             [&] {
                 InputHistory& h = m_irc.History();
                 const std::string how = word();
                 if (how == "fill") {
                     const int from = std::stoi(word()), to = std::stoi(word());
                     for (int n = from; n < to; ++n)
                         h.Store("line" + std::to_string(n));
                     Result("write-index", std::to_string(h.WriteIndex()));
                 }
                 if (how == "up") Result("got", h.Up());
                 if (how == "down") Result("got", h.Down());
                 for (std::string slot; words >> slot;)
                     Result("slot " + slot, h.Slot(std::stoi(slot)));
             }},
            {"safe-name", [&] { Result("safe-name", SafeBaseName(arg)); }},
            {"byte-count", [&] { Result("byte-count", FormatByteCount(std::stod(arg))); }},
        };
        ASSERT_TRUE(verbs.count(verb)) << "unknown command " << command;
        verbs.at(verb)();
    }

    // "Name=value ..." of the [Extras] record; the session takes them at once.
    void SetExtras(std::istringstream& words) {
        base::ExtrasSettings& x = m_extras;
        const std::map<std::string, int*> numbers = {
            {"UserFromIdent", &x.UserFromIdent}, {"ShowErrorNumerics", &x.ShowErrorNumerics},
            {"JoinAfter422", &x.JoinAfter422},   {"TrailingAfterPrefix", &x.TrailingAfterPrefix},
            {"NickFrom001", &x.NickFrom001},     {"AutoReconnect", &x.AutoReconnect},
            {"PacedSending", &x.PacedSending},   {"IrcTls", &x.IrcTls},
            {"IrcTlsVerify", &x.IrcTlsVerify},
        };
        const std::map<std::string, std::string*> texts = {
            {"IrcEncoding", &x.IrcEncoding},   {"SaslMechanism", &x.SaslMechanism},     {"SaslUser", &x.SaslUser},
            {"SaslPassword", &x.SaslPassword}, {"IrcTlsPinSha256", &x.IrcTlsPinSha256},
        };
        for (std::string pair; words >> pair;) {
            const std::string name = pair.substr(0, pair.find('=')), value = pair.substr(pair.find('=') + 1);
            ASSERT_TRUE(numbers.count(name) || texts.count(name)) << "unknown setting " << name;
            if (numbers.count(name)) *numbers.at(name) = std::stoi(value);
            if (texts.count(name)) *texts.at(name) = value;
        }
        m_session.SetOptions(ExtrasOptionsFrom(m_extras));
        m_irc.SetCompat(m_session.Options().Compat);
    }

    // Everything new since the last command, in a fixed order.
    void Record() {
        std::ostringstream skipped;
        if (m_quiet) m_out.swap(skipped);
        RecordInto();
        if (m_quiet) m_out.swap(skipped);
    }

    void RecordInto() {
        const auto& pane = m_irc.PaneLines();
        if (pane.size() < m_pane) m_pane = 0; // the pane was cleared
        for (; m_pane < pane.size(); ++m_pane) {
            const auto& line = pane[m_pane];
            m_out << "  pane " << (line.Runs.empty() ? -1 : line.Runs.front().Foreground) << " " << Escape(line.Raw)
                  << "\n";
        }
        Tail("event", m_events, m_eventsSeen);
        Tail("sent", m_transport.sent, m_sent);
        Tail("asked", m_questions.asked, m_asked);
        Tail("session", m_notes, m_notesSeen);
        auto& t = m_transport;
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
        if (m_questions.proposed != m_proposed) m_out << "  proposed " << m_questions.proposed << "\n";
        m_proposed = m_questions.proposed;
        if (m_files.files != m_filesSeen) {
            m_out << "  files";
            for (const auto& [path, content] : m_files.files)
                m_out << " " << path << "=" << Escape(content);
            m_out << "\n";
        }
        m_filesSeen = m_files.files;
    }

    void Tail(const char* kind, const std::vector<std::string>& all, std::size_t& seen) {
        for (; seen < all.size(); ++seen)
            m_out << "  " << kind << " " << Escape(all[seen]) << "\n";
    }

    testing::FakeTransport m_transport;
    testing::FakeClock m_clock;
    testing::ScriptedQuestions m_questions;
    testing::MemoryFiles m_files;
    base::ExtrasSettings m_extras;
    IrcSession m_session{m_transport, m_clock};
    uscIRC m_irc{m_session, m_clock, &m_questions, &m_files};
    LineFramer m_framer;
    Utf8Decoder m_decoder;
    std::vector<std::string> m_events, m_notes;
    std::ostringstream m_out;
    bool m_quiet = false;
    std::size_t m_pane = 0, m_eventsSeen = 0, m_sent = 0, m_asked = 0, m_notesSeen = 0, m_connects = 0, m_listens = 0,
                m_ident = 0, m_dcc = 0, m_dccSent = 0;
    int m_dccCloses = 0, m_serverCloses = 0;
    std::string m_proposed;
    std::map<std::string, std::string> m_filesSeen;
};

TALLYBOT_SCRIPT_TESTS(IrcTranscriptTest, "irc", [](const std::string&, const std::vector<std::string>& commands) {
    return TranscriptRunner().Run(commands);
});

} // namespace
} // namespace tallybot::irc
