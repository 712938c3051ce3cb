// The query side driven by scripts: each file under tests/data/query/ holds cases of commands (a
// click, a timer tick, a reply, a socket error, a detection, a name to clean, a parse) and,
// indented below each command, everything that followed: datagrams sent, calls on the host,
// messages, log entries, and what a printing command shows. The runner replays the commands and
// rebuilds the file; it must come out byte for byte as it is. TALLYBOT_WRITE_EXPECTED=1 writes the
// rebuilt file after a deliberate change (read the diff).

#include "app/app_settings.h"
#include "base/vb_convert.h"
#include "query/game_data_log.h"
#include "query/name_colours.h"
#include "query/parsers.h"
#include "query/quake_family.h"
#include "query/query_cycle.h"
#include "query/query_cycle_packets.h"
#include "query/server_address.h"
#include "query/team_scores.h"
#include "tests/support/fixture_file.h"
#include "tests/support/script_replay.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

namespace fs = std::filesystem;

// Bytes below 0x20 and above 0x7E are written as \xHH, and so is a backslash before "x".
std::string Escape(std::string_view bytes) {
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if (c < 0x20 || c > 0x7E || (c == '\\' && i + 1 < bytes.size() && bytes[i + 1] == 'x')) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

// "@path" is a fixture under tests/data/ ("+" joins several); otherwise the escaped bytes.
std::string Bytes(std::string_view text) {
    std::string out;
    if (text.starts_with("@")) {
        std::istringstream files{std::string(text.substr(1))};
        for (std::string file; std::getline(files, file, '+');)
            out += test::ReadFixture(file);
        return out;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

int EngineByCode(const std::string& code) {
    for (int id = 0; id <= kEngineA2S; ++id)
        if (EngineCodeWithExtras(id, QueryExtras{false, true, false, false}) == code) return id;
    return std::stoi(code);
}

struct Recorder : QuerySocket, NameResolver, QueryHost {
    // QuerySocket
    void SetRemoteHost(const std::string& address) override { host = address; }
    void SetRemotePort(long p) override { port = p; }
    void SendData(std::string_view datagram) override {
        if (refuse) throw vb::VbError(10065, "No route to host");
        Add("send " + Escape(datagram));
    }
    // NameResolver
    void AddrByName(const std::string& name, int t) override {
        ticket = t;
        Add("resolve " + name);
    }
    // QueryHost: the real parsers, every call written down
    void ParseReply(int engineId, std::string_view reply) override {
        Add("parse " + EngineCodeWithExtras(engineId, {false, true, false, false}) + " " + Escape(reply));
        ParseEngineReply(engineId, reply, *state, settings->Profiles.Active());
    }
    void ResetTeamScores() override { Add("reset-team-scores"); }
    void HandleQ3Info(std::string_view) override { Add("q3info"); }
    void RefreshDisplay() override { Add("refresh"); }
    void CalcCappedPlayer(int scorePerCap, int matchOver) override {
        Add("capped " + std::to_string(scorePerCap) + " " + std::to_string(matchOver));
    }
    void SelectProfile() override { Add("select-profile"); }
    void RefreshControls() override {}
    void ShowMessage(const std::string& text) override { Add("message " + text); }
    void Log(const std::string& module, const std::string& procedure, long number, const std::string& message,
             bool) override {
        Add("log " + module + ";" + procedure + ";" + std::to_string(number) + ";" + message);
    }

    void Add(const std::string& line) {
        if (!line.starts_with("send ") || !muted)
            lines.push_back(line);
        else
            ++mutedSends;
    }

    GameState* state = nullptr;
    app::AppSettings* settings = nullptr;
    std::vector<std::string> lines;
    std::string host;
    long port = 0;
    int ticket = 0;
    bool refuse = false;
    bool muted = false;
    int mutedSends = 0;
};

// Runs one case's commands on a fresh cycle and writes the commands with what each caused.
class ScriptRunner : public tallybot::test::CommandRunner {
public:
    ScriptRunner() {
        m_rec.state = &m_state;
        m_rec.settings = &m_settings;
        m_settings.LogFolder = m_folder.Slash();
        m_cycle.Attach(&m_rec, &m_rec);
    }

private:
    void Execute(const std::string& command) override {
        const auto blank = command.find(' ');
        const std::string verb = command.substr(0, blank);
        const std::string arg = blank == std::string::npos ? "" : command.substr(blank + 1);
        std::istringstream words(arg);
        std::string first, rest;
        words >> first;
        std::getline(words >> std::ws, rest);
        const auto number = [&] { return std::stoi(first); };
        const std::map<std::string, std::function<void()>> verbs = {
            {"start",
             [&] {
                 m_view.cmbGamServerText = arg;
                 m_cycle.cmdGamQuery_Click();
             }},
            {"click", [&] { m_cycle.cmdGamQuery_Click(); }},
            {"tick",
             [&] {
                 for (int i = arg.empty() ? 1 : number(); i > 0; --i)
                     m_cycle.tmrGamQuery_Timer();
             }},
            {"reply", [&] { m_cycle.sckGamServ_DataArrival(Bytes(arg), m_now); }},
            {"error", [&] { m_cycle.sckGamServ_Error(number(), rest); }},
            {"resolved", [&] { m_cycle.AddressResolved(m_rec.ticket + number(), rest); }},
            {"no-resolver", [&] { m_cycle.Attach(&m_rec, nullptr); }},
            {"refuse", [&] { m_rec.refuse = arg == "1"; }},
            {"mute", [&] { m_rec.muted = true; }},
            {"unmute",
             [&] {
                 m_rec.muted = false;
                 Line("sent " + std::to_string(std::exchange(m_rec.mutedSends, 0)) + " datagrams");
             }},
            {"now",
             [&] {
                 LocalDateTime& t = m_now;
                 std::sscanf(arg.c_str(), "%d-%d-%d %d:%d:%d", &t.Year, &t.Month, &t.Day, &t.Hour, &t.Minute,
                             &t.Second);
             }},
            {"set", [&] { Set(first, rest); }},
            {"view", [&] { ShowView(); }},
            {"state", [&] { ShowState(); }},
            {"record", [&] { ShowRecord(); }},
            {"file", [&] { Line("file " + Escape(test::ReadBytes(m_folder.File(arg)))); }},
            {"write",
             [&] {
                 test::WriteBytes(m_folder.File(arg.substr(0, arg.find('='))), Bytes(arg.substr(arg.find('=') + 1)));
             }},
            // Functions of one input, each line its answer.
            {"detect",
             [&] {
                 GameState s;
                 s.EngineId = EngineByCode(first);
                 DetectEngineWithExtras(Bytes(rest), s, QueryExtrasOf(m_settings.Extras));
                 Line("engine " + EngineCodeWithExtras(s.EngineId, QueryExtrasOf(m_settings.Extras)) + " (" +
                      std::to_string(s.EngineId) + ") port+" + std::to_string(s.QueryPortOffset));
             }},
            {"codes",
             [&] {
                 std::string codes = "codes";
                 for (int id = -1; id <= kEngineA2S + 1; ++id)
                     codes +=
                         " " + std::to_string(id) + "=" + EngineCodeWithExtras(id, QueryExtrasOf(m_settings.Extras));
                 Line(codes);
             }},
            {"needs-switch",
             [&] { Line("engine " + PresentDayEngineNeedingSwitch(Bytes(rest), EngineByCode(first))); }},
            {"name", // names are views into a reply: the digit after this one must not be read
             [&] {
                 const std::string in = Bytes(arg), buffer = in + "1";
                 const std::string_view name(buffer.data(), in.size());
                 const std::string irc = CleanName(name, true), ircBuffer = irc + "1";
                 Line("clear " + Escape(ClearName(name)) + " irc " + Escape(irc) + " shown " +
                      Escape(WithoutIrcColours(std::string_view(ircBuffer.data(), irc.size()))));
                 EXPECT_EQ(CleanName(name, false), ClearName(name)) << arg;
                 EXPECT_EQ(GameColoursToIrc(name), irc) << arg;
             }},
            {"tokens", // the classic tokenizer: the first word is the delimiter
             [&] {
                 std::string source = Bytes(rest), tokens = "tokens";
                 while (!source.empty())
                     tokens += " [" + Escape(ExtractString(source, first)) + "]";
                 Line(tokens);
             }},
            {"unreal", [&] { Line("irc " + Escape(UnrealColoursToIrc(Bytes(arg)))); }},
            {"ipv6", [&] { Line(IsIPv6Literal(arg) ? "ipv6 yes" : "ipv6 no"); }},
            {"address",
             [&] {
                 std::string shown = "-";
                 const AddressCheck c =
                     ValidateAddress(first == "-" ? "" : first, rest, [&](const std::string& m) { shown = m; });
                 const char* kinds[] = {"rejected", "address", "host-name"};
                 Line(std::string(kinds[static_cast<int>(c.kind)]) + " " + c.text + " / " + shown);
             }},
            {"log-name",
             [&] {
                 Line(GameLogFileName(arg, false, m_now) + " / " + GameLogFileName(arg, true, m_now) + " / " +
                      DateTimeText(m_now));
             }},
            {"parse",
             [&] {
                 m_state.EngineId = EngineByCode(first);
                 ParseEngineReply(m_state.EngineId, Bytes(rest), m_state, m_settings.Profiles.Active());
             }},
            {"scores",
             [&] {
                 Line("team-scores " + std::to_string(m_state.TeamScoreRed) + " " +
                      std::to_string(m_state.TeamScoreBlue) + " resets=" + std::to_string(m_state.TeamScoreResets) +
                      " sums " + std::to_string(m_state.Status.ScoreRed) + " " +
                      std::to_string(m_state.Status.ScoreBlue));
             }},
            {"correct-scores", [&] { CorrectTeamScores(m_state, number(), std::stoi(rest)); }},
            {"reset-scores", [&] { ResetTeamScores(m_state); }},
            {"calc-scores", [&] { CalcTeamScores(m_state, number(), 0, m_settings.Profiles.Active()); }},
            {"a2s-request", [&] { Line("request " + Escape(BuildA2SQuery(number(), Bytes(rest)))); }},
            {"a2s-probe", [&] { Line("request " + Escape(m_a2s.ProbeRequest())); }},
            {"a2s-next",
             [&] {
                 int step = number();
                 const std::string request = m_a2s.NextRequest(step);
                 Line("request " + Escape(request) + " step " + std::to_string(step));
             }},
            {"a2s-receive",
             [&] {
                 const A2SExchange::Outcome o = m_a2s.Receive(Bytes(arg));
                 Line("reply " + (o.reply ? Escape(*o.reply) : "-") + " resend " +
                      (o.resend ? Escape(*o.resend) : "-"));
             }},
            {"a2s-part", // "a2s-part [N] DATA": with N, N more bytes "a" after DATA
             [&] {
                 const bool padded = !arg.empty() && std::isdigit(static_cast<unsigned char>(arg[0]));
                 const std::string part = padded ? Bytes(rest) + std::string(number(), 'a') : Bytes(arg);
                 const std::optional<std::string> whole = m_assembly.Add(part);
                 Line(whole ? "whole " + Escape(*whole) : "held " + std::to_string(m_assembly.PartsHeld()));
             }},
            {"cuts", // every beginning of a reply parsed on its own: where what it yields changes
             [&] {
                 const std::string reply = Bytes(rest);
                 std::string last;
                 for (std::size_t cut = 0; cut <= reply.size(); ++cut) {
                     GameState s;
                     ParseEngineReply(EngineByCode(first), std::string_view(reply).substr(0, cut), s,
                                      m_settings.Profiles.Active());
                     const std::string now = "host=" + Escape(s.Status.HostName) +
                                             " players=" + std::to_string(s.Status.NumPlayers) +
                                             " first=" + Escape(s.Players[1].Name);
                     if (now != last) Line("from " + std::to_string(cut) + " " + now);
                     last = now;
                 }
             }},
            {"team", [&] { m_state.Players[static_cast<std::size_t>(number())].Team = std::stoi(rest); }},
            {"threewave", // time limit, time played, game name: the time left
             [&] {
                 ServerStatus st;
                 st.TimeLimit = static_cast<std::uint8_t>(number());
                 st.ScoreTime = rest.substr(0, rest.find(' '));
                 st.GameName = Bytes(rest.substr(rest.find(' ') + 1));
                 quake::ApplyThreewaveTime(st);
                 Line("left " + st.ScoreTime);
             }},
            {"player",
             [&] {
                 PlayerStatus& p = m_state.Players[static_cast<std::size_t>(number())];
                 std::istringstream(rest) >> p.Score >> p.Team >> p.Flag;
             }},
        };
        ASSERT_TRUE(verbs.count(verb)) << "unknown command " << command;
        verbs.at(verb)();
    }

    void Set(const std::string& name, const std::string& value) {
        const int v = std::atoi(value.c_str());
        profiles::GameProfile& profile = m_settings.Profiles.Entries[m_settings.Profiles.CurrentProfile];
        const std::map<std::string, int*> numbers = {
            {"ConnState", &m_settings.ConnState},
            {"Reconnect", &m_settings.Reconnect},
            {"DoLog", &m_settings.DoLog},
            {"GameLogTimeStamp", &m_settings.GameLogTimeStamp},
            {"LogInclDate", &m_settings.LogInclDate},
            {"CurrentProfile", &m_settings.Profiles.CurrentProfile},
            {"ModernQuake3", &m_settings.Extras.ModernQuake3},
            {"A2SQuery", &m_settings.Extras.A2SQuery},
            {"IPv6", &m_settings.Extras.IPv6},
            {"QueryRetry", &m_settings.Extras.QueryRetry},
            {"Interval", &profile.Interval},
            {"Advanced", &profile.Advanced},
            {"AutoTeams", &profile.AutoTeams},
            {"Scoring", &profile.Scoring},
            {"ScorePerCap", &profile.ScorePerCap},
            {"EngineId", &m_state.EngineId},
            {"QueryStep", &m_state.QueryStep},
            {"QueryPortOffset", &m_state.QueryPortOffset},
            {"NumPlayers", &m_state.Status.NumPlayers},
        };
        if (name == "HostName") {
            m_state.Status.HostName = value;
        } else if (name == "Buttons") { // the three buttons a detection enables
            m_view.cmdInfoToIRCEnabled = m_view.cmdAssignPlayersEnabled = m_view.cmdCorrectScoreEnabled = v;
        } else if (name == "ProfilesCaption") {
            m_view.cmdProfilesCaption = value;
        } else {
            ASSERT_TRUE(numbers.count(name)) << "unknown setting " << name;
            *numbers.at(name) = v;
        }
    }

    void ShowView() {
        const QueryView& v = m_view;
        char colour[8];
        std::snprintf(colour, sizeof colour, "%06X", v.lblQueryStatusColour);
        Line("view field=" + v.cmbGamServerText + (v.cmbGamServerEnabled ? "" : " (locked)") +
             " button=" + v.cmdGamQueryCaption + " profiles=" + v.cmdProfilesCaption +
             " status=" + v.lblQueryStatusCaption + " colour=" + colour);
        Line("view timer=" + std::string(v.tmrGamQueryEnabled ? "on " : "off ") +
             std::to_string(v.tmrGamQueryInterval) + " ircpost=" + std::to_string(v.tmrIRCPostEnabled) +
             " info/assign/correct=" + std::to_string(v.cmdInfoToIRCEnabled) +
             std::to_string(v.cmdAssignPlayersEnabled) + std::to_string(v.cmdCorrectScoreEnabled));
    }

    void ShowState() {
        Line("state running=" + std::to_string(m_cycle.IsRunning()) + " field=" + m_view.cmbGamServerText +
             " remote=" + m_rec.host + ":" + std::to_string(m_rec.port) +
             " engine=" + std::to_string(m_state.EngineId) + " port+" + std::to_string(m_state.QueryPortOffset) +
             " step=" + std::to_string(m_state.QueryStep) + " conn=" + std::to_string(m_settings.ConnState) +
             " profile=" + std::to_string(m_settings.Profiles.CurrentProfile) +
             " missed=" + std::to_string(m_cycle.MissedReplies()) + " probing=" + std::to_string(m_cycle.Probing()) +
             " socket-error=" + std::to_string(m_cycle.SocketErrorSeen()) + " buffer=" + Escape(m_cycle.ReplyBuffer()) +
             " datalog=" + std::to_string(m_cycle.DataLog().IsOpen()));
    }

    // The game state as the parsers leave it: status, every non-empty slot, team scores.
    void ShowRecord() {
        const ServerStatus& s = m_state.Status;
        std::ostringstream out;
        out << "status type=" << s.GameType << " caps=" << s.CaptureLimit << " max=" << +s.MaxClients
            << " time=" << +s.TimeLimit << " frags=" << s.FragLimit << " host=" << s.HostName
            << " version=" << s.Version << " protocol=" << s.Protocol << " map=" << s.MapName << " game=" << s.GameName
            << " red=" << s.ScoreRed << " blue=" << s.ScoreBlue << " left=" << s.ScoreTime
            << " gamever=" << s.GameVersion << " players=" << s.NumPlayers;
        Line(Escape(out.str()));
        for (int slot = 0; slot <= kMaxPlayers; ++slot) {
            const PlayerStatus& p = m_state.Players[static_cast<std::size_t>(slot)];
            if (p == PlayerStatus{}) continue;
            Line("player " + std::to_string(slot) + " score=" + std::to_string(p.Score) +
                 " ping=" + std::to_string(p.Ping) + " team=" + std::to_string(p.Team) +
                 " flag=" + std::to_string(p.Flag) + " name=" + Escape(p.Name));
        }
        Execute("scores");
    }

    void Line(const std::string& text) { m_rec.lines.push_back(text); }

    void Record() override {
        for (const std::string& line : m_rec.lines)
            m_out << "  " << line << "\n";
        m_rec.lines.clear();
    }

    test::TempFolder m_folder;
    QueryView m_view;
    GameState m_state;
    app::AppSettings m_settings;
    Recorder m_rec;
    QueryCycle m_cycle{m_view, m_state, m_settings, m_rec};
    LocalDateTime m_now;
    A2SExchange m_a2s;
    A2SAssembly m_assembly;
};

TALLYBOT_SCRIPT_TESTS(QueryScriptTest, "query", [](const std::string&, const std::vector<std::string>& commands) {
    return ScriptRunner().Run(commands);
});

} // namespace
} // namespace tallybot::query
