// The main window's logic driven by scripts (tests/data/logic/*.script, see tests/support/script_replay.h):
// commands (settings and profile files, start-up, buttons, server lines, game replies, remote
// commands, timer ticks, shutdown) and, indented below each, everything that changed in answer:
// lines sent to the IRC server, timers set, values of the view and the state, log entries,
// messages to the operator, and whether the window was told to repaint.
#include "app/logic/pane_text.h"
#include "profiles/team_assignment.h"
#include "tests/logic/logic_fixture.h"
#include "tests/support/fixture_file.h"
#include "tests/support/script_replay.h"
#include "tests/support/temp_folder.h"

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::app::test {
namespace {

namespace fs = std::filesystem;

using tallybot::test::Escape;
using tallybot::test::Unescape;

std::string Join(const std::vector<std::string>& items, const char* separator = ",") {
    std::string out;
    for (std::size_t i = 0; i < items.size(); ++i)
        out += (i == 0 ? "" : separator) + items[i];
    return out;
}

// The keys of an INI text, as "[Section]Key".
std::set<std::string> Keys(const std::string& ini) {
    std::set<std::string> keys;
    std::istringstream in(ini);
    std::string section;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.front() == '[')
            section = line.substr(0, line.find(']') + 1);
        else if (const auto eq = line.find('='); eq != std::string::npos)
            keys.insert(section + line.substr(0, eq));
    }
    return keys;
}

const std::map<std::string, OutputStyle> kStyles = {
    {"ansi", OutputStyle::Ansi}, {"plain", OutputStyle::Plain}, {"raw", OutputStyle::Raw}};

// Runs one case's commands on a fresh logic and writes the commands with what each caused.
class TranscriptRunner : public tallybot::test::CommandRunner {
public:
    explicit TranscriptRunner(bool withSession) : m_rig(withSession) {
        m_rig.logic->SetViewObserver([this] { ++m_refreshes; });
        m_state = State();
    }

private:
    MainLogic& L() { return *m_rig.logic; }

    // Socket events go to the session when there is one, else straight to the IRC core.
    template <class F> void Socket(F event) {
        if (m_rig.session)
            event(*m_rig.session);
        else
            event(L().Irc());
    }

    void Execute(const std::string& command) override {
        const auto blank = command.find(' ');
        const std::string verb = command.substr(0, blank);
        const std::string arg = blank == std::string::npos ? "" : Unescape(command.substr(blank + 1));
        const std::string first = arg.substr(0, arg.find(' '));
        const std::string rest = arg.find(' ') == std::string::npos ? "" : arg.substr(arg.find(' ') + 1);
        MainView& v = L().View();
        const std::map<std::string, HistoryCombo MainView::*> boxes = {{"server", &MainView::cmbIRCServer},
                                                                       {"port", &MainView::cmbIRCPort},
                                                                       {"channel", &MainView::cmbIRCChannel},
                                                                       {"nick", &MainView::cmbIRCNick}};
        const std::map<std::string, void (MainLogic::*)()> clicks = {
            {"irc", &MainLogic::cmdIRCConnection_Click},
            {"query", &MainLogic::cmdGamQuery_Click},
            {"unload", &MainLogic::Form_QueryUnload},
            {"refresh", &MainLogic::RefreshDisplay},
            {"tick-delay", &MainLogic::tmrIRCSendDelay_Timer},
            {"commit-gamserver", &MainLogic::cmbGamServer_Commit},
            {"post-players-short", &MainLogic::mnuPostPlayersShort_Click},
        };
        const std::map<std::string, std::function<void()>> verbs = {
            {"file",
             [&] {
                 fs::create_directories(fs::path(m_rig.home.File(first)).parent_path());
                 tallybot::test::WriteBytes(m_rig.home.File(first), rest);
             }},
            {"show", [&] { m_out << "  " << Escape(tallybot::test::ReadBytes(m_rig.home.File(arg))) << "\n"; }},
            {"grep",
             [&] {
                 std::istringstream in(tallybot::test::ReadBytes(m_rig.home.File(first)));
                 for (std::string line; std::getline(in, line);)
                     if (line.find(rest) != std::string::npos) m_out << "  " << Escape(line) << "\n";
             }},
            {"default-keys", // the saved file has the keys of a default one, no more, no fewer
             [&] {
                 const bool same = Keys(tallybot::test::ReadBytes(m_rig.home.File("Tallybot.ini"))) ==
                                   Keys(tallybot::test::ReadFixture("settings/default.ini"));
                 m_out << "  " << (same ? "same keys" : "other keys") << "\n";
             }},
            {"start", [&] { m_rig.Start(arg); }},
            {"type", [&] { L().SetIrcText(boxes.at(first), rest); }},
            {"commit", [&] { L().cmbIRC_Commit(boxes.at(arg)); }},
            {"gamserver", [&] { L().cmbGamServer_Change(arg); }},
            {"profile", [&] { L().mnuProfileSel_Click(std::stoi(arg)); }},
            {"remote", [&] { L().HandleRemote(arg); }},
            {"connected", [&] { Socket([](auto& s) { s.OnServerConnected(); }); }},
            {"<", [&] { Socket([&](auto& s) { s.OnServerData(arg + "\r\n"); }); }},
            {"closed", [&] { Socket([](auto& s) { s.OnServerClosed(); }); }},
            {"socket-error", [&] { Socket([&](auto& s) { s.OnServerError(std::stoi(first), rest); }); }},
            {"socket-state", [&] { m_rig.transport.serverState = std::stoi(arg); }},
            {"after",
             [&] {
                 m_rig.clock.ticks += static_cast<std::uint32_t>(std::stoul(arg));
                 m_rig.session->Tick();
             }},
            {"reply",
             [&] {
                 L().Query().sckGamServ_DataArrival(arg, {});
                 L().Sync();
             }},
            {"assign", // "assign red 0 2": rows of the unassigned list; "assign blue all"
             [&] {
                 profiles::AssignmentLists lists = profiles::FillAssignmentLists(L().Game());
                 const int team = first == "red" ? 0 : 1;
                 if (rest == "all") return profiles::AssignAllPlayers(L().Game(), lists, team);
                 std::vector<std::size_t> rows;
                 std::istringstream words(rest);
                 for (std::size_t row; words >> row;)
                     rows.push_back(row);
                 profiles::AssignPlayers(L().Game(), lists, team, rows);
             }},
            {"correct",
             [&] {
                 const auto refused = profiles::CorrectScore(L().Game(), first, rest, L().ReportState().PrevScoreRed,
                                                             L().ReportState().PrevScoreBlue);
                 if (refused) m_out << "  refused " << *refused << "\n";
             }},
            {"question-fails", [&] { m_rig.shell.questionFails = true; }},
            {"render", // "render plain 255 text": a pane line of that colour on standard output
             [&] {
                 const std::string colour = rest.substr(0, rest.find(' '));
                 const auto line = irc::BuildPaneLine(rest.substr(colour.size() + 1), std::stoi(colour));
                 m_out << "  " << Escape(RenderPaneLine(line, kStyles.at(first))) << "\n";
             }},
            {"style", // "style auto raw terminal no-color", "style never": the output style chosen
             [&] {
                 const OutputStyle style = ChooseOutputStyle(first == "auto"     ? ColorChoice::Auto
                                                             : first == "always" ? ColorChoice::Always
                                                                                 : ColorChoice::Never,
                                                             rest.find("raw") != std::string::npos,
                                                             rest.find("terminal") != std::string::npos,
                                                             rest.find("no-color") != std::string::npos);
                 for (const auto& [name, value] : kStyles)
                     if (value == style) m_out << "  " << name << "\n";
             }},
            {"set",
             [&] {
                 const int n = std::stoi(rest);
                 const std::map<std::string, std::function<void()>> fields = {
                     {"WindowState", [&] { v.WindowState = n; }},
                     {"WindowTop", [&] { v.WindowTop = n; }},
                     {"WindowLeft", [&] { v.WindowLeft = n; }},
                     {"WindowDpiX", [&] { v.WindowDpiX = n; }},
                     {"ModWinTop", [&] { L().Settings().ModWinTop = n; }},
                 };
                 fields.at(first)();
             }},
            {"list", // "list port 99999,,,": a history box's entries
             [&] {
                 std::vector<std::string>& list = (v.*boxes.at(first)).List;
                 std::istringstream entries(rest);
                 list.clear();
                 for (std::string entry; std::getline(entries, entry, ',');)
                     list.push_back(entry);
                 list.resize(4);
             }},
        };
        if (clicks.count(verb))
            (L().*clicks.at(verb))();
        else if (verbs.count(verb))
            verbs.at(verb)();
        else
            ADD_FAILURE() << "unknown command " << command;
    }

    // The values a case may see change, by name.
    std::map<std::string, std::string> State() {
        MainLogic& l = L();
        const MainView& v = l.View();
        const query::QueryView& q = v.Query;
        const auto box = [](const HistoryCombo& c) {
            return c.Text + " [" + Join(c.List) + "]" + (c.Enabled ? "" : " disabled");
        };
        const auto flag = [](bool on, const char* name) { return on ? std::string(" ") + name : std::string(); };
        std::vector<std::string> flags;
        for (const auto& [on, name] : {std::pair{v.mnuStatToIRCEnabled, "mnuStatToIRC"},
                                       {q.cmdInfoToIRCEnabled, "cmdInfoToIRC"},
                                       {q.tmrIRCPostEnabled, "tmrIRCPost"}})
            if (on) flags.push_back(name);
        std::vector<std::string> menu, rows;
        for (int i = 1; i <= profiles::kMaxProfiles; ++i)
            if (v.mnuProfileSel[static_cast<std::size_t>(i)].Visible)
                menu.push_back(v.mnuProfileSel[static_cast<std::size_t>(i)].Caption +
                               (i == l.Settings().Profiles.CurrentProfile ? "*" : ""));
        for (const PlayerRow& r : v.lvwPlayers)
            rows.push_back(r.Name + " " + r.Score + " " + r.Ping + " " + r.Team);
        const reporting::ReportingState& r = l.ReportState();
        return {
            {"ConnState", std::to_string(l.Settings().ConnState) + ", tray: " + TrayTooltip(l.Settings().ConnState)},
            {"irc", std::to_string(l.Irc().ConnectStatus()) + " " + l.Irc().Nick() + " " + l.Irc().ChannelName()},
            {"cmdIRCConnection", v.cmdIRCConnectionCaption + flag(!v.cmdIRCConnectionEnabled, "disabled")},
            {"cmbIRCServer", box(v.cmbIRCServer)},
            {"cmbIRCPort", box(v.cmbIRCPort)},
            {"cmbIRCChannel", box(v.cmbIRCChannel)},
            {"cmbIRCNick", box(v.cmbIRCNick)},
            {"cmbGamServer", q.cmbGamServerText + " [" + Join(v.cmbGamServerList) + "]"},
            {"cmdGamQuery", q.cmdGamQueryCaption + flag(!v.cmdGamQueryEnabled, "disabled")},
            {"lblQueryStatus", q.lblQueryStatusCaption},
            {"tmrGamQueryInterval", std::to_string(q.tmrGamQueryInterval)},
            {"controls", Join(flags, " ")},
            {"mnuProfileSel", Join(menu) + " " + q.cmdProfilesCaption},
            {"labels", Join({v.lblHostname, v.lblGameName, v.lblMapname, v.lblTimelimit, v.lblPlayerInfo}, " | ")},
            {"lvwPlayers", Join(rows, "; ")},
            {"Caption", v.Caption + flag(v.KeepOnTop, "on top")},
            {"scores", std::to_string(l.Game().TeamScoreRed) + ":" + std::to_string(l.Game().TeamScoreBlue) + " prev " +
                           std::to_string(r.PrevScoreRed) + ":" + std::to_string(r.PrevScoreBlue) + " posted " +
                           std::to_string(r.LastPostedRed) + ":" + std::to_string(r.LastPostedBlue)},
            {"errors", l.Log() ? std::to_string(l.Log()->ErrorCount()) +
                                     flag(!l.Log()->ReportAddress.empty(), "report to ") + l.Log()->ReportAddress
                               : ""},
        };
    }

    // Everything new since the last command, in a fixed order.
    void Record() override {
        Tail("sent", m_rig.transport.sent, m_sent);
        for (; m_connects < m_rig.transport.connects.size(); ++m_connects)
            m_out << "  connect " << m_rig.transport.connects[m_connects].first << " "
                  << m_rig.transport.connects[m_connects].second << "\n";
        Tail("timer", m_rig.timers.calls, m_timers);
        Tail("shell", m_rig.shell.messages, m_shell);
        if (L().Log()) {
            std::string log = L().Log()->LogText();
            const std::string home = m_rig.home.Slash();
            for (auto at = log.find(home); at != std::string::npos; at = log.find(home))
                log.replace(at, home.size(), "HOME/");
            std::istringstream entries(log.substr(std::min(m_log, log.size())));
            for (std::string entry; std::getline(entries, entry);)
                m_out << "  log " << Escape(entry.substr(0, entry.find_last_not_of('\r') + 1)) << "\n";
            m_log = log.size();
        }
        const auto state = State();
        for (const auto& [name, value] : state)
            if (m_state[name] != value)
                m_out << "  " << name << " =" << (value.empty() ? "" : " ") << Escape(value) << "\n";
        m_state = state;
        if (m_refreshes > 0) m_out << "  refreshed\n";
        m_refreshes = 0;
    }

    void Tail(const char* kind, const std::vector<std::string>& all, std::size_t& seen) {
        for (; seen < all.size(); ++seen)
            m_out << "  " << kind << " " << Escape(all[seen]) << "\n";
    }

    LogicRig m_rig;
    std::map<std::string, std::string> m_state;
    std::size_t m_sent = 0, m_connects = 0, m_timers = 0, m_shell = 0, m_log = 0;
    int m_refreshes = 0;
};

// A case whose header ends in "(session)" runs over the Extras session.
TALLYBOT_SCRIPT_TESTS(LogicTranscriptTest, "logic", [](const std::string& header, const auto& commands) {
    return TranscriptRunner(header.ends_with("(session)")).Run(commands);
});

} // namespace
} // namespace tallybot::app::test
