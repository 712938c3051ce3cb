// The Quake 2 status reply:
//
//   FF FF FF FF "print" LF
//   "\" key "\" value "\" key "\" value ... LF
//   score " " ping " " "\"" name "\"" LF        (one line per player)

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
using namespace std::string_view_literals;

// The last "ctf"/"deathmatch" value read is also the player counter (a byte, as it was).
void ScanKeys(std::string_view line, ServerStatus& s, std::uint8_t& counter, bool colourNames) {
    while (!line.empty()) {
        std::string_view key = Extract(line, '\\');
        if (KeyIs(key, "maxclients")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.MaxClients = quake::ToByte(v); });
        } else if (KeyIs(key, "timelimit")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.TimeLimit = vb::CByte(static_cast<double>(quake::ToInt16(v))); });
        } else if (KeyIs(key, "fraglimit")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.FragLimit = quake::ToInt16(v); });
        } else if (KeyIs(key, "hostname")) {
            s.HostName = CleanName(Extract(line, '\\'), colourNames);
        } else if (KeyIs(key, "version")) {
            s.Version = Extract(line, '\\');
        } else if (KeyIs(key, "protocol")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] { s.Protocol = quake::ToByte(v); });
        } else if (KeyIs(key, "mapname")) {
            s.MapName = Extract(line, '\\');
        } else if (KeyIs(key, "gamename")) {
            s.GameName = Extract(line, '\\');
        } else if (KeyIs(key, "ctf")) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] {
                counter = quake::ToByte(v);
                if (counter == 1) s.GameType.assign(1, '4');
            });
        } else if (KeyIs(key, "deathmatch") && s.GameType.empty()) {
            std::string_view v = Extract(line, '\\');
            ResumeNext([&] {
                counter = quake::ToByte(v);
                if (counter == 1) s.GameType.assign(1, '3');
            });
        }
    }
}

} // namespace

void ParseQ2(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply.substr(0, 8) == "\xFF\xFF\xFF\xFF"
                              "info"sv)
        return;
    ServerStatus& s = state.Status;
    ClearServerStatus(s);
    std::string_view rest = reply;
    std::uint8_t counter = 0;
    ScanKeys(quake::TakeKeyLine(rest), s, counter, state.GameColoursToIrc);

    // After "deathmatch" 1 the first player lands in slot 2 and slot 1 stays empty: kept.
    const int n = quake::ReadPlayerLines(rest, state.Players, counter, true, state.GameColoursToIrc);
    // Every reader walks slots 1..NumPlayers, so the count never points past the table.
    s.NumPlayers = n < kMaxPlayers ? n : kMaxPlayers;
    s.ScoreTime = "N/A";
    ClearPlayers(state.Players, s.NumPlayers + 1, 0);
    if (profile.AutoTeams == 0) CalcTeamScores(state, 0, 0, profile);
}

} // namespace tallybot::query
