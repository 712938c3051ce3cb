#include "query/game_state.h"

#include "base/vb_convert.h"
#include "query/quake_text.h"

#include <cctype>

namespace tallybot::query {

namespace {

constexpr std::array<const char*, kEngineCount + 1> kEngineCodes = {
    "", "Q2", "Q3", "UT", "HL", "RTCW", "EF", "JK2", "SoF2", "UT2k3", "MoH", "ET", "JA", "CoD", "AA", "EF2", "FC", "D3",
};

std::string Upper(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// The text from `start` up to (not including) the next `stop` byte or the end; empty when start
// lies past the end.
std::string_view ValueFrom(std::string_view reply, std::size_t start, char stop) {
    if (start >= reply.size()) return {};
    std::string_view rest = reply.substr(start);
    return rest.substr(0, rest.find(stop));
}

int EngineOfVersion(const std::string& v) {
    // Order matters: "ET" is only tried after the longer prefixes, the rest is Quake 2.
    if (StartsWith(v, "Q3")) return kEngineQ3;
    if (StartsWith(v, "DOOM")) return kEngineD3;
    if (StartsWith(v, "ST:V")) return kEngineEF;
    if (StartsWith(v, "WOLF")) return kEngineRTCW;
    if (StartsWith(v, "JK2MP:")) return kEngineJK2;
    if (StartsWith(v, "SOF2MP")) return kEngineSoF2;
    if (StartsWith(v, "MEDAL OF HONOR ALLIED ASSAULT")) return kEngineMoH;
    if (StartsWith(v, "JAMP:")) return kEngineJA;
    if (StartsWith(v, "ET")) return kEngineET;
    if (StartsWith(v, "ELITE FORCE II")) return kEngineEF2;
    return kEngineQ2;
}

} // namespace

std::string EngineCode(int engineId) {
    if (engineId < 1 || engineId > kEngineCount) return {};
    return kEngineCodes[static_cast<std::size_t>(engineId)];
}

void ClearServerStatus(ServerStatus& status) {
    // Field by field, so the texts keep their buffers from one reply to the next.
    status.GameType.clear();
    status.CaptureLimit = 0;
    status.MaxClients = 0;
    status.TimeLimit = 0;
    status.FragLimit = 0;
    status.HostName.clear();
    status.Version.assign(1, '0');
    status.Protocol = 0;
    status.MapName.clear();
    status.GameName.assign(1, '0');
    status.ScoreRed = 0;
    status.ScoreBlue = 0;
    status.ScoreTime.clear();
    status.GameVersion.clear();
    status.NumPlayers = 0;
}

void ClearPlayers(PlayerTable& table, int first, int keepFlag) {
    for (int i = first < 0 ? 0 : first; i <= kMaxPlayers; ++i) {
        PlayerStatus& p = table[static_cast<std::size_t>(i)];
        p.Name.clear();
        p.Mark.clear();
        p.Score = 0;
        p.Ping = 0;
        p.Team = 0;
        if (keepFlag == 0) p.Flag = 0;
    }
}

void AssignTeamList(std::string_view list, PlayerTable& table, int team) {
    while (!list.empty()) {
        std::size_t blank = list.find(' ');
        std::string_view token = list.substr(0, blank);
        list = blank == std::string_view::npos ? std::string_view{} : list.substr(blank + 1);
        if (token.empty()) continue; // doubled or trailing blanks
        int slot = quake::ToInt16(token);
        if (slot < 0 || slot > kMaxPlayers) throw vb::SubscriptOutOfRange();
        table[static_cast<std::size_t>(slot)].Team = team;
    }
}

std::string ExtractString(std::string& source, std::string_view delimiter) {
    std::size_t pos = source.find(delimiter);
    if (pos == std::string::npos) {
        std::string rest = std::move(source);
        source.clear();
        return rest;
    }
    std::string head = source.substr(0, pos);
    source.erase(0, pos + delimiter.size());
    return head;
}

std::string ClearName(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        char c = text[i];
        if (c == '"') {
            ++i;
            continue;
        }
        if (c == '^' && i + 1 < text.size()) {
            char next = text[i + 1];
            switch (next) {
            case 'N':
            case 'n':
            case 'B':
            case 'b':
                i += 2;
                continue;
            case 'X':
            case 'x':
                i += 8; // caret, letter and six hex digits, whatever they are
                continue;
            default:
                if (next >= '0' && next <= '9') {
                    i += 2;
                    continue;
                }
            }
        }
        out.push_back(c);
        ++i;
    }
    return out;
}

void DetectEngine(std::string_view reply, GameState& state) {
    using namespace std::string_view_literals;
    // A server shutting down or refusing us says nothing about its engine.
    if (reply == "\xFF\xFF\xFF\xFF"
                 "disconnect"sv ||
        reply == "\xFF\xFF\xFF\xFF"
                 "disconnect\0"sv)
        return;

    if (std::size_t pos = reply.find("\\version"); pos != std::string_view::npos) {
        state.EngineId = EngineOfVersion(Upper(ValueFrom(reply, pos + 9, '\\')));
        return;
    }
    if (std::size_t pos = reply.find("si_version"); pos != std::string_view::npos) {
        if (StartsWith(Upper(ValueFrom(reply, pos + 11, '\0')), "DOOM")) {
            state.EngineId = kEngineD3;
            return;
        }
    }
    // GameSpy-style replies: ask again on the query port, game port plus one.
    if ((reply.find('@') != std::string_view::npos && reply.size() < 11) || StartsWith(reply, "\x00\xC0\xFF"sv)) {
        state.EngineId = kEnginePending;
        state.QueryPortOffset = 1;
        return;
    }
    if (state.EngineId == kEnginePending) {
        std::size_t pos = reply.find("gamename");
        if (pos == std::string_view::npos) {
            state.EngineId = kEngineUT2k3;
            return;
        }
        std::string game = Upper(ValueFrom(reply, pos + 9, '\\'));
        if (StartsWith(game, "UT")) {
            state.EngineId = kEngineUT;
            return;
        }
        if (StartsWith(game, "ARMYGAME")) {
            state.EngineId = kEngineAA;
            return;
        }
    }
    if (StartsWith(reply, "\xFF\xFF\xFF\xFF"
                          "C"sv)) {
        state.EngineId = kEngineHL;
        return;
    }
    state.EngineId = StartsWith(reply, "\x7F\xFF\xFF\xFFR\x0E"sv) ? kEngineFC : kEngineCoD;
}

} // namespace tallybot::query
