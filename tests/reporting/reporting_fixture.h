#pragma once
// A reporting set-up over fake sinks: what is posted, noticed and written to the pane is recorded
// line by line so tests compare bytes.

#include "app/app_settings.h"
#include "base/app_log.h"
#include "query/game_state.h"
#include "reporting/reporting.h"

#include <regex>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::reporting::test {

// The default colour strings: labels in colour 10, values in colour 2 (octal \003 is the colour code).
inline const std::string E = "\00310";
inline const std::string I = "\0032";
inline const std::string Red = "\00304";
inline const std::string Blue = "\00312";

// What an IRC client shows of a line, by mIRC's colour rule: code 3 takes up to two digits, and a
// comma with up to two more only when a digit follows it; bold, reset and underline show nothing.
inline std::string ShownByClient(const std::string& line) {
    static const std::regex codes("\x03([0-9]{1,2}(,[0-9]{1,2})?)?|[\x02\x0F\x1F]");
    return std::regex_replace(line, codes, "");
}

struct FakeChannel : ChannelSink {
    void SendToChannel(const std::string& text) override { lines.push_back(text); }
    void NotifyUser(const std::string& nick, const std::string& text) override { notices.emplace_back(nick, text); }
    std::string Nick() const override { return nick; }

    std::vector<std::string> lines;
    std::vector<std::pair<std::string, std::string>> notices;
    std::string nick = "Bot1";
};

struct FakePane : PaneSink {
    void AddText(const std::string& text, int colour) override { lines.emplace_back(text, colour); }
    std::vector<std::pair<std::string, int>> lines;
};

class ReportingTest : public ::testing::Test {
protected:
    ReportingTest() {
        settings.ConnState = 3;
        settings.Profiles.ProfileCount = 1;
        settings.Profiles.CurrentProfile = 1;
        auto& p = Profile();
        p.ProfileName = "Q3CTF";
        p.Engine = query::kEngineQ3;
        p.Advanced = 1;
        p.StatusPosting = 1;
        game.Status.HostName = "Zephra";
        game.Status.Version = "Q3 1.32";
        game.Status.GameName = "osp";
        game.Status.GameVersion = "OSP 1.01";
        game.Status.MapName = "q3wctf1";
        game.Status.ScoreTime = "15:00";
        game.Status.MaxClients = 16;
        game.Status.TimeLimit = 20;
    }

    profiles::GameProfile& Profile() { return settings.Profiles.Entries[1]; }

    // Appends a player in the next slot; his Flag equals his score, as after a capture check.
    int AddPlayer(const std::string& name, int score, int ping, int team) {
        const int slot = ++game.Status.NumPlayers;
        auto& p = game.Players[static_cast<std::size_t>(slot)];
        p.Name = name;
        p.Score = static_cast<std::int16_t>(score);
        p.Flag = score;
        p.Ping = ping;
        p.Team = team;
        return slot;
    }

    std::string Expand(const std::string& text, bool preview = false, bool reset = false) {
        return ExpandTemplate(ctx, state, text, preview, reset);
    }

    app::AppSettings settings;
    query::GameState game;
    std::string teamRed;
    std::string teamBlue;
    std::string server = "10.0.0.1:27960";
    base::clsAppLog log{::testing::TempDir() + "tallybot_reporting_test.log", "Tallybot", "1.0.0", nullptr};
    ReportContext ctx{settings, game, teamRed, teamBlue, server, &log};
    ReportingState state;
    FakeChannel channel;
    FakePane pane;
    Reporting rep{ctx, state, channel, pane};
};

} // namespace tallybot::reporting::test
