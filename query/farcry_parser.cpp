// FarCry replies, one per sub-query; the fifth byte names the reply:
//   status  7F FF FF FF 'S' + 5 bytes, then gamever 00 hostname 00 version 00 gamename 00 map 00
//           numplayers maxplayers
//   players 7F FF FF FF 'P' + 3 bytes, then per player: name 00 text 00, 1 byte, score 00 (one
//           byte), 2 bytes, ping 00 (one byte), 6 bytes
//   rules   7F FF FF FF 'R' + 1 byte, then key 00 value 00 ...
// Each sub-reply fills only its own fields, so the three combine into one state.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/parsers.h"

namespace tallybot::query {

namespace {

void ParseFCServer(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    reader.Skip(10);
    status.GameVersion = reader.Text();
    status.HostName = reader.Text();
    status.Version = reader.Text();
    status.GameName = reader.Text();
    status.MapName = reader.Text();
    base::ResumeNext([&] { status.NumPlayers = reader.Code(); });
    base::ResumeNext([&] { status.MaxClients = reader.Code(); });
}

void ParseFCPlayers(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    ByteReader reader(reply);
    reader.Skip(8);
    int n = 0;
    // A 51st player is an index error that ends the list; the first 50 are kept.
    while (reader.Remaining() >= 10 && n < kMaxPlayers) {
        ++n;
        PlayerStatus& player = state.Players[static_cast<std::size_t>(n)];
        player.Name = reader.Text();
        reader.Text();
        reader.Skip(1);
        std::string_view score = reader.Text();
        base::ResumeNext([&] { player.Score = FirstCode(score); });
        reader.Skip(2);
        std::string_view ping = reader.Text();
        base::ResumeNext([&] { player.Ping = FirstCode(ping); });
        reader.Skip(6);
    }
    // NumPlayers comes from the status reply; this one only fills the table.
    base::ResumeNext([&] { CalcTeamScores(state, 0, 0, profile); });
    base::ResumeNext([&] { ClearPlayers(state.Players, n + 1, 0); });
}

void ParseFCRules(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    reader.Skip(6);
    while (!reader.Empty()) {
        std::string key = LowerAscii(reader.Text());
        if (key == "gr_scorelimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.FragLimit = vb::CInt(static_cast<double>(vb::CLng(value))); });
        } else if (key == "gr_timelimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(vb::Val(value)); });
        }
    }
}

} // namespace

void ParseFCReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply.size() < 5) return;
    switch (reply[4]) {
    case 'S':
    case 's':
        ParseFCServer(reply, state.Status);
        break;
    case 'P':
    case 'p':
        ParseFCPlayers(reply, state, profile);
        break;
    case 'R':
    case 'r':
        ParseFCRules(reply, state.Status);
        break;
    default:
        break;
    }
}

} // namespace tallybot::query
