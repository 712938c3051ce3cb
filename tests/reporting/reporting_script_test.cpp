// Match reporting driven by scripts: each file under tests/data/reporting/ holds cases of commands
// (set a field, add a player, expand a template, run a post, a match event or a channel request)
// and, indented below each command, everything it caused: channel lines, notices, pane lines,
// log entries and every watched field that changed. Each case starts from the same game: a Quake 3
// CTF server "Zephra" on q3wctf1 with IRC and game server connected.

#include "app/app_settings.h"
#include "base/app_log.h"
#include "base/escape_marks.h"
#include "query/game_state.h"
#include "reporting/irc_preview.h"
#include "reporting/reporting.h"
#include "tests/support/fixture_file.h"
#include "tests/support/script_replay.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <type_traits>

#include <gtest/gtest.h>

namespace tallybot::reporting {
namespace {

namespace fs = std::filesystem;
using test::Escape;
using test::Unescape;

struct Sinks : ChannelSink, PaneSink {
    void SendToChannel(const std::string& text) override { out << "  say " << Escape(text) << "\n"; }
    void NotifyUser(const std::string& nick, const std::string& text) override {
        out << "  notice " << nick << " " << Escape(text) << "\n";
    }
    std::string Nick() const override { return "Bot1"; }
    void AddText(const std::string& text, int colour) override {
        out << "  pane " << colour << " " << Escape(text) << "\n";
    }
    std::ostringstream out;
};

template <class T> void Assign(T& field, const std::string& value) {
    if constexpr (std::is_same_v<T, std::string>)
        field = Unescape(value);
    else
        field = static_cast<T>(std::stoll(value));
}

template <class T> std::string Shown(const T& value) {
    if constexpr (std::is_same_v<T, std::string>)
        return "\"" + Escape(value) + "\"";
    else
        return std::to_string(value);
}

// What an IRC client shows of a line: code 3 takes up to two digits, and a comma with up to two
// more only when a digit follows it; bold, reset and underline show nothing.
std::string ShownByClient(const std::string& line) {
    static const std::regex codes("\x03([0-9]{1,2}(,[0-9]{1,2})?)?|[\x02\x0F\x1F]");
    return std::regex_replace(line, codes, "");
}

class ReportingRunner {
public:
    ReportingRunner() {
        settings.ConnState = 3;
        settings.Profiles.ProfileCount = 1;
        settings.Profiles.CurrentProfile = 1;
        auto& p = Profile();
        p.ProfileName = "Q3CTF";
        p.Engine = query::kEngineQ3;
        p.Advanced = 1;
        p.StatusPosting = 1;
        auto& s = game.Status;
        s.HostName = "Zephra";
        s.Version = "Q3 1.32";
        s.GameName = "osp";
        s.GameVersion = "OSP 1.01";
        s.MapName = "q3wctf1";
        s.ScoreTime = "15:00";
        s.MaxClients = 16;
        s.TimeLimit = 20;
        state.SendDelayRunning = false;
        m_last = Watched();
    }

    std::string Run(const std::string& command) {
        std::istringstream words(command);
        std::string verb, rest;
        words >> verb;
        std::getline(words >> std::ws, rest);
        try {
            Execute(verb, rest);
        } catch (const std::exception& e) {
            sinks.out << "  throws " << e.what() << "\n";
        }
        // What a set-up command changes is what it says; only the others' changes are shown.
        RecordChanges(verb != "set" && verb != "player" && verb != "score");
        std::string out = sinks.out.str();
        sinks.out.str("");
        return out;
    }

private:
    profiles::GameProfile& Profile() { return settings.Profiles.Entries[1]; }

    void Execute(const std::string& verb, const std::string& rest) {
        std::istringstream args(rest);
        std::string word;
        if (verb == "set") {
            std::string value;
            args >> word;
            std::getline(args >> std::ws, value);
            const auto setter = Setters().find(word);
            if (setter == Setters().end()) throw std::invalid_argument("no field " + word);
            setter->second(value);
        } else if (verb == "player") { // name score ping team; the flag starts equal to the score
            auto& p = game.Players[static_cast<std::size_t>(++game.Status.NumPlayers)];
            args >> p.Name >> p.Score >> p.Ping >> p.Team;
            p.Flag = p.Score;
        } else if (verb == "score") { // slot score
            int slot = 0;
            args >> slot;
            args >> game.Players[static_cast<std::size_t>(slot)].Score;
        } else if (verb == "expand" || verb == "sample" || verb == "reset") {
            const std::string line = ExpandTemplate(ctx, state, Unescape(rest), verb == "sample", verb == "reset");
            sinks.out << "  = " << Escape(line) << "\n";
        } else if (verb == "shown") { // what a client shows of the channel lines of a command
            ReportingRunner::Execute(rest.substr(0, rest.find(' ')), rest.substr(rest.find(' ') + 1));
            std::string lines = sinks.out.str(), shown;
            sinks.out.str("");
            for (std::size_t at = 0; (at = lines.find("  say ", at)) != std::string::npos; at += 6)
                shown +=
                    "  shown " + ShownByClient(Unescape(lines.substr(at + 6, lines.find('\n', at) - at - 6))) + "\n";
            sinks.out << shown;
        } else if (verb == "post") {
            Posts().at(rest)();
        } else if (verb == "playerlist") {
            const std::string list = rep.Posts.FormatPlayerList(rest == "details");
            sinks.out << "  = " << Escape(list) << "\n";
        } else if (verb == "q3info") {
            args >> word;
            game.Status.ScoreTime = Unescape(word);
            args >> word;
            rep.Events.HandleQ3Info(word == "just-detected");
        } else if (verb == "capcheck") {
            rep.Events.CalcCappedPlayer(Profile().ScorePerCap, state.MatchOver, rest == "just-detected");
        } else if (verb == "interval") {
            rep.Events.tmrIRCPost_Timer();
        } else if (verb == "request") {
            rep.Commands.ircMain_UserCommand(Unescape(rest), "joe", "joe@example.org");
        } else if (verb == "delaytick") {
            rep.Commands.tmrIRCSendDelay_Timer();
        } else if (verb == "joins") {
            rep.Commands.ircMain_UserJoin(rest);
        } else if (verb == "onjoin") {
            rep.Commands.PostOnJoinMessage();
        } else if (verb == "runs") {
            for (const PreviewRun& r : RenderIrcPreview(Unescape(rest)))
                sinks.out << "  run " << r.colour << (r.bold ? " bold" : "") << (r.underline ? " underline" : "")
                          << " \"" << Escape(r.text) << "\"\n";
        } else if (verb == "palette") {
            for (const Rgb& c : kPreviewColours)
                sinks.out << "  rgb " << +c.red << " " << +c.green << " " << +c.blue << "\n";
        } else if (verb == "picker") {
            for (const TemplateMark& m : kTemplateMarks)
                sinks.out << "  " << m.pickerEntry << " -> " << MarkOfPickerEntry(m.pickerEntry) << "\n";
        } else {
            throw std::invalid_argument("unknown command " + verb);
        }
    }

    using Setter = std::function<void(const std::string&)>;
#define FIELD(owner, name)                                                                                             \
    {                                                                                                                  \
#name, [=, this](const std::string& v) { Assign(owner.name, v); }                                              \
    }
    const std::map<std::string, Setter>& Setters() {
        const auto profile = [this]() -> profiles::GameProfile& { return Profile(); };
        if (m_setters.empty()) {
            m_setters = {
                FIELD(profile(), Scoring),
                FIELD(profile(), ScorePerCap),
                FIELD(profile(), PostScoreChange),
                FIELD(profile(), UseCustom),
                FIELD(profile(), Message),
                FIELD(profile(), MessageStart),
                FIELD(profile(), MessageEnd),
                FIELD(profile(), StatusPosting),
                FIELD(profile(), Advanced),
                FIELD(profile(), AutoTeams),
                FIELD(profile(), IntervalTime),
                FIELD(profile(), IntervalInfo),
                FIELD(settings, ConnState),
                FIELD(settings, InfoTextCol),
                FIELD(settings.Extras, TwoDigitColours),
                FIELD(settings, AllowCustom),
                FIELD(settings, AllowAbout),
                FIELD(settings, AllowUserComm),
                FIELD(settings, AllowTeamInfo),
                FIELD(settings, AllowServInfo),
                FIELD(settings, CommandParameter),
                FIELD(settings, SendDelay),
                FIELD(settings, NoticeMsg),
                FIELD(settings, OnJoinMessage),
                FIELD(settings, NoticeEnabled),
                FIELD(settings, OnJoinEnabled),
                FIELD(game.Status, HostName),
                FIELD(game.Status, GameVersion),
                FIELD(game.Status, MapName),
                FIELD(game.Status, TimeLimit),
                FIELD(game.Status, NumPlayers),
                FIELD(game, TeamScoreRed),
                FIELD(game, TeamScoreBlue),
                FIELD(state, PrevScoreRed),
                FIELD(state, PrevScoreBlue),
                FIELD(state, LastPostedRed),
                FIELD(state, LastPostedBlue),
                FIELD(state, MatchOver),
                FIELD(state, CappingPlayer),
                FIELD(state, SendDelayRunning),
                {"TeamRed", [this](const std::string& v) { teamRed = Unescape(v); }},
            };
        }
        return m_setters;
    }
#undef FIELD

    const std::map<std::string, std::function<void()>>& Posts() {
        static const std::map<std::string, void (InfoPosts::*)()> posts = {
            {"Server", &InfoPosts::mnuPostServer},     {"ServerShort", &InfoPosts::mnuPostServerShort},
            {"Teams", &InfoPosts::mnuPostTeams},       {"TeamsShort", &InfoPosts::mnuPostTeamsShort},
            {"Players", &InfoPosts::mnuPostPlayers},   {"PlayersShort", &InfoPosts::mnuPostPlayersShort},
            {"Custom", &InfoPosts::mnuPostCustomMess}, {"Help", &InfoPosts::mnuPostHelp},
            {"About", &InfoPosts::mnuPostAbout},
        };
        if (m_posts.empty())
            for (const auto& [name, post] : posts)
                m_posts[name] = [this, post] { (rep.Posts.*post)(); };
        return m_posts;
    }

    // Every field a command may change, with the value it has now.
    std::map<std::string, std::string> Watched() {
        std::map<std::string, std::string> w = {
            {"PrevScore", Shown(state.PrevScoreRed) + ":" + Shown(state.PrevScoreBlue)},
            {"LastPosted", Shown(state.LastPostedRed) + ":" + Shown(state.LastPostedBlue)},
            {"MatchOver", Shown(state.MatchOver)},
            {"Timeout", Shown(state.Timeout)},
            {"IntervalTicks", Shown(state.IntervalTicks)},
            {"CappingPlayer", Shown(state.CappingPlayer)},
            {"SendDelay", Shown(state.SendDelayRunning) + " ticks " + Shown(state.SendDelayTicks)},
            {"HostName", Shown(game.Status.HostName)},
            {"ScorePerCap", Shown(Profile().ScorePerCap) + " table " + Shown(settings.Profiles.Entries[0].ScorePerCap)},
        };
        for (int slot = 1; slot <= game.Status.NumPlayers && slot <= 8; ++slot)
            w["Flag" + std::to_string(slot)] = Shown(game.Players[static_cast<std::size_t>(slot)].Flag);
        return w;
    }

    void RecordChanges(bool showFields) {
        // Log entries without their time: module;procedure;number;message.
        for (std::size_t end; (end = log.LogText().find("\r\n", m_logSeen)) != std::string::npos; m_logSeen = end + 2) {
            std::string entry = log.LogText().substr(m_logSeen, end - m_logSeen);
            const auto second = entry.find(';', entry.find(';') + 1);
            entry.erase(second, entry.find(';', second + 1) - second);
            sinks.out << "  log " << Escape(entry) << "\n";
        }
        const auto now = Watched();
        for (const auto& [name, value] : now)
            if (showFields && m_last[name] != value) sinks.out << "  ~ " << name << " " << value << "\n";
        m_last = now;
    }

    app::AppSettings settings;
    query::GameState game;
    std::string teamRed, teamBlue;
    std::string server = "10.0.0.1:27960";
    base::clsAppLog log{::testing::TempDir() + "tallybot_reporting_script.log", "Tallybot", "1.0.0", nullptr};
    ReportContext ctx{settings, game, teamRed, teamBlue, server, &log};
    ReportingState state;
    Sinks sinks;
    Reporting rep{ctx, state, sinks, sinks};
    std::map<std::string, Setter> m_setters;
    std::map<std::string, std::function<void()>> m_posts;
    std::map<std::string, std::string> m_last;
    std::size_t m_logSeen = 0;
};

// The shipped profiles' texts read the same in an IRC client with two-digit colours off and on.
TEST(ShippedProfileTexts, NeedNoWidenedColours) {
    const fs::path folder = test::SourceRoot() / "profiles" / "default";
    int texts = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        ReportingRunner classic, fitted;
        fitted.Run("set TwoDigitColours 1");
        std::ifstream in(entry.path(), std::ios::binary);
        for (std::string line; std::getline(in, line);) {
            if (!line.starts_with("Message") || line.find('=') == std::string::npos) continue;
            std::string text = line.substr(line.find('=') + 1);
            if (!text.empty() && text.back() == '\r') text.pop_back();
            base::UnescapeControlCodes(text);
            auto shown = [&](ReportingRunner& runner) {
                const std::string out = runner.Run("expand " + Escape(text));
                return ShownByClient(Unescape(out.substr(4, out.size() - 5)));
            };
            EXPECT_EQ(shown(classic), shown(fitted)) << entry.path() << ": " << text;
            ++texts;
        }
    }
    EXPECT_GT(texts, 0);
}

TALLYBOT_SCRIPT_TESTS(ReportingScriptTest, "reporting",
                      [](const std::string&, const std::vector<std::string>& commands) {
                          ReportingRunner runner;
                          std::string out;
                          for (const std::string& command : commands)
                              out += command + "\n" + runner.Run(command);
                          return out;
                      });

} // namespace
} // namespace tallybot::reporting
