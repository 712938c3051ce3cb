// Half-Life replies, one per sub-query; the fifth byte names the reply:
//   info    FF FF FF FF 'C' address 00 hostname 00 map 00 gamedir 00 description 00 players max ...
//   players FF FF FF FF 'D' count, then per player: index, name 00, frags (4, LE), time (4)
//   rules   FF FF FF FF 'E' count (2), then key 00 value 00 ...
// Each sub-reply fills only its own fields, so the three combine into one state.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/parsers.h"

namespace tallybot::query {

namespace {

void ParseHLInfo(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    reader.Text(); // header and server address
    status.HostName = reader.Text();
    status.MapName = reader.Text();
    status.GameName = reader.Text();
    status.Version = reader.Text();
    reader.Skip(1); // player count
    base::ResumeNext([&] { status.MaxClients = reader.Code(); });
}

void ParseHLPlayers(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    ByteReader reader(reply);
    reader.Skip(7); // header, count and the first player's index
    int n = 0;
    // A 51st player is an index error that ends the list; the first 50 are kept.
    while (reader.Remaining() >= 5 && n < kMaxPlayers) {
        ++n;
        PlayerStatus& player = state.Players[static_cast<std::size_t>(n)];
        player.Name = reader.Text();
        std::string_view frags = reader.Take(4);
        base::ResumeNext([&] { player.Score = FirstCode(frags); }); // low byte only
        reader.Skip(5);                                             // time and the next index
    }
    state.Status.NumPlayers = n;
    base::ResumeNext([&] { CalcTeamScores(state, 0, 0, profile); });
    base::ResumeNext([&] { ClearPlayers(state.Players, n + 1, 0); });
}

void ParseHLRules(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    while (!reader.Empty()) {
        std::string key = LowerAscii(reader.Text());
        if (key == "mp_timelimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(static_cast<double>(vb::CLng(value))); });
        } else if (key == "mp_winlimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.FragLimit = vb::CInt(static_cast<double>(vb::CLng(value))); });
        } else if (key == "mp_timeleft") {
            status.ScoreTime = reader.Text();
        }
    }
}

} // namespace

void ParseHLReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply.size() < 5) return;
    switch (reply[4]) {
    case 'C':
    case 'c':
        ParseHLInfo(reply, state.Status);
        break;
    case 'D':
    case 'd':
        ParseHLPlayers(reply, state, profile);
        break;
    case 'E':
    case 'e':
        ParseHLRules(reply, state.Status);
        break;
    default:
        break;
    }
}

} // namespace tallybot::query
