// The Quake 3 family status reply (Q3, RTCW, EF, JK2, SoF2, MoH, ET, JA, CoD, EF2):
//
//   FF FF FF FF "statusResponse" LF
//   "\" key "\" value "\" key "\" value ... LF
//   score " " ping " " "\"" name "\"" LF        (one line per player; MoH: ping " " name)

#include "base/error_trap.h"
#include "query/name_colours.h"
#include "query/parsers.h"
#include "query/quake_family.h"
#include "query/quake_text.h"

namespace tallybot::query {

namespace {

using base::ResumeNext;
using quake::Extract;
using quake::KeyIs;

struct TeamLists {
    std::string_view red;
    std::string_view blue;
    std::string_view active;
};

// Each known key takes the next token as its value; anything else is skipped by itself, so a
// value that happens to read like a known key is taken as that key.
void ScanKeys(std::string_view line, ServerStatus& s, TeamLists& lists, bool colourNames) {
    while (!line.empty()) {
        std::string_view key = Extract(line, '\\');
        if (key.size() < 7 || key.size() > 14) continue; // no known key is shorter or longer
        if (KeyIs(key, "g_gametype")) {
            s.GameType = quake::Lower(Extract(line, '\\'));
        } else if (KeyIs(key, "capturelimit")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.CaptureLimit = quake::ToInt16(v); });
        } else if (KeyIs(key, "sv_maxclients")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.MaxClients = quake::ToByte(v); });
        } else if (KeyIs(key, "timelimit")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.TimeLimit = quake::ToByte(v); });
        } else if (KeyIs(key, "fraglimit")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.FragLimit = quake::ToInt16(v); });
        } else if (KeyIs(key, "sv_hostname")) {
            s.HostName = CleanName(Extract(line, '\\'), colourNames);
        } else if (KeyIs(key, "version")) {
            s.Version = Extract(line, '\\');
        } else if (KeyIs(key, "protocol")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.Protocol = quake::ToInt16(v); });
        } else if (KeyIs(key, "mapname")) {
            s.MapName = Extract(line, '\\');
        } else if (KeyIs(key, "gamename")) {
            s.GameName = Extract(line, '\\');
        } else if (KeyIs(key, "score_red")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.ScoreRed = quake::ToInt16(v); });
        } else if (KeyIs(key, "score_blue")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.ScoreBlue = quake::ToInt16(v); });
        } else if (KeyIs(key, "score_time")) {
            s.ScoreTime = Extract(line, '\\');
        } else if (KeyIs(key, "gameversion")) {
            s.GameVersion = Extract(line, '\\');
        } else if (KeyIs(key, "players_red") || KeyIs(key, "players_axis")) {
            lists.red = Extract(line, '\\');
        } else if (KeyIs(key, "players_blue") || KeyIs(key, "players_allies")) {
            lists.blue = Extract(line, '\\');
        } else if (KeyIs(key, "players_active")) {
            lists.active = Extract(line, '\\');
        }
    }
}

bool Listed(std::string_view list) {
    return !list.empty() && list != "(None)";
}

// Runs on a freshly cleared table and before the player lines are read, so in a duel the
// scores taken over are those of the cleared slots (0); that order is deliberate. The first bad
// player number ends the whole assignment.
void AssignTeams(GameState& state, const TeamLists& lists) {
    ServerStatus& s = state.Status;
    PlayerTable& players = state.Players;
    ResumeNext([&] {
        if (s.GameType != "1") {
            if (Listed(lists.red)) AssignTeamList(lists.red, players, 1);
            if (Listed(lists.blue)) AssignTeamList(lists.blue, players, 2);
            return;
        }
        if (lists.active == "(None)") return;
        std::string_view active = lists.active;
        for (int team = 1; team <= 2; ++team) {
            int slot = quake::ToInt16(Extract(active, ' '));
            if (slot < 0 || slot > kMaxPlayers) throw vb::SubscriptOutOfRange();
            PlayerStatus& duellist = players[static_cast<std::size_t>(slot)];
            duellist.Team = team;
            (team == 1 ? s.ScoreRed : s.ScoreBlue) = duellist.Score;
        }
    });
}

} // namespace

namespace quake {

void ParseQ3FamilyLines(std::string_view reply, GameState& state, const profiles::GameProfile& profile,
                        bool linesWithoutScore) {
    ServerStatus& s = state.Status;
    ClearServerStatus(s);
    std::string_view rest = reply;
    TeamLists lists;
    ScanKeys(TakeKeyLine(rest), s, lists, state.GameColoursToIrc);

    if (profile.AutoTeams == 1) {
        ClearPlayers(state.Players, 0, 1);
        AssignTeams(state, lists);
    }

    const int n = ReadPlayerLines(rest, state.Players, 0, !linesWithoutScore, state.GameColoursToIrc);
    s.NumPlayers = n;
    ClearPlayers(state.Players, n + 1, 0);
}

} // namespace quake

void ParseQ3Family(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    quake::ParseQ3FamilyLines(reply, state, profile, state.EngineId == kEngineMoH);
}

} // namespace tallybot::query
