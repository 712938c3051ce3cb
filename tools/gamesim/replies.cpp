#include "replies.h"

#include "a2s_replies.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

namespace tallybot::gamesim {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

const std::string kOob = "\xFF\xFF\xFF\xFF"s;

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

std::string Byte(int value) {
    return std::string(1, static_cast<char>(std::clamp(value, 0, 255)));
}

std::string Le32(std::uint32_t value) {
    std::string out;
    for (int i = 0; i < 4; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
    return out;
}

std::string Z(std::string_view text) {
    return std::string(text) + '\0';
}

// UT2003 text: length byte (text plus terminator), text, 0x00.
std::string Ut2Text(std::string_view text) {
    return Byte(static_cast<int>(text.size()) + 1) + Z(text);
}

std::string TeamList(const MatchState& s, int team) {
    std::string list;
    for (std::size_t i = 0; i < s.players.size(); ++i)
        if (s.players[i].team == team) list += (list.empty() ? "" : " ") + std::to_string(i + 1);
    return list.empty() ? "(None)" : list;
}

// The version key that makes each Quake 3 family member recognisable; CoD carries none.
std::string Q3FamilyVersion(int engineId) {
    switch (engineId) {
    case 2:
        return "Q3 1.32c linux-i386 Nov 21 2026";
    case 5:
        return "Wolf 1.41 linux-i386 Nov 21 2026";
    case 6:
        return "ST:V HM v1.20 linux-i386";
    case 7:
        return "JK2MP: v1.04 linux-i386";
    case 8:
        return "SOF2MP V1.03 linux-i386";
    case 10:
        return "Medal of Honor Allied Assault 1.11 linux";
    case 11:
        return "ET 2.60b linux-i386 May 8 2006";
    case 12:
        return "JAmp: v1.0.1.0 linux-i386";
    case 15:
        return "Elite Force II 1.10 linux";
    default:
        return {};
    }
}

// "\xFF\xFF\xFF\xFFstatusResponse\n\key\value...\n" then "score ping "name"" lines (MoH: no score).
std::string Q3Status(const MatchState& s) {
    std::string kv;
    const auto add = [&](std::string_view key, const std::string& value) {
        kv += "\\" + std::string(key) + "\\" + value;
    };
    const std::string version = s.version.empty() ? Q3FamilyVersion(s.engineId) : s.version;
    if (!version.empty()) add("version", version);
    if (s.engineId == 13) add("shortversion", "1.5");
    add("sv_hostname", s.host);
    add("mapname", s.map);
    add("g_gametype", s.gameType);
    add("gamename", s.gameName);
    add("sv_maxclients", std::to_string(s.maxPlayers));
    add("timelimit", std::to_string(s.timeLimit));
    add("fraglimit", std::to_string(s.fragLimit));
    add("capturelimit", std::to_string(s.captureLimit));
    add("protocol", "68");
    add("score_red", std::to_string(s.scoreRed));
    add("score_blue", std::to_string(s.scoreBlue));
    add("score_time", s.timeText);
    add(s.engineId == 11 || s.engineId == 13 ? "players_axis" : "players_red", TeamList(s, 1));
    add(s.engineId == 11 || s.engineId == 13 ? "players_allies" : "players_blue", TeamList(s, 2));
    std::string reply = kOob + (s.engineId == 10 ? "\x01"s : ""s) + "statusResponse\n" + kv + "\n";
    for (const SimPlayer& p : s.players) {
        if (s.engineId != 10) reply += std::to_string(p.score) + " ";
        reply += std::to_string(p.ping) + " \"" + p.name + "\"\n";
    }
    return reply;
}

// DarkPlaces (Xonotic): "gamename" and "modname" first, no version key, the game type in qcstatus,
// and "score ping team "name"" lines (team 1 red, 2 blue, 0 none).
std::string DarkPlacesStatus(const MatchState& s) {
    std::string reply = kOob + "statusResponse\n\\gamename\\" + s.gameName + "\\modname\\data\\gameversion\\806" +
                        "\\sv_maxclients\\" + std::to_string(s.maxPlayers) + "\\clients\\" +
                        std::to_string(s.players.size()) + "\\bots\\0\\mapname\\" + s.map + "\\hostname\\" + s.host +
                        "\\protocol\\3\\qcstatus\\" + s.gameType + ":0.8.6:P0:S16:F5:MXonotic::\n";
    for (const SimPlayer& p : s.players)
        reply += std::to_string(p.score) + " " + std::to_string(p.ping) + " " + std::to_string(p.team) + " \"" +
                 p.name + "\"\n";
    return reply;
}

// The short "getinfo" answer that server browsers ask for before the full status.
std::string Q3Info(const MatchState& s) {
    return kOob + "infoResponse\n\\hostname\\" + s.host + "\\mapname\\" + s.map + "\\clients\\" +
           std::to_string(s.players.size()) + "\\sv_maxclients\\" + std::to_string(s.maxPlayers) + "\\gametype\\" +
           s.gameType + "\\protocol\\68";
}

std::string Q2Status(const MatchState& s) {
    std::string reply = kOob + "print\n\\hostname\\" + s.host + "\\mapname\\" + s.map +
                        "\\version\\3.20 x86 Nov 21 2026 Linux" + "\\maxclients\\" + std::to_string(s.maxPlayers) +
                        "\\timelimit\\" + std::to_string(s.timeLimit) + "\\fraglimit\\" + std::to_string(s.fragLimit) +
                        "\\gamename\\" + s.gameName + "\\protocol\\34\\deathmatch\\1\n";
    for (const SimPlayer& p : s.players)
        reply += std::to_string(p.score) + " " + std::to_string(p.ping) + " \"" + p.name + "\"\n";
    return reply;
}

// GameSpy status in two datagrams, the second closing with "\final\".
std::vector<std::string> GameSpyStatus(const MatchState& s, int gamePort) {
    const bool aa = s.engineId == 14;
    std::string info = "\\gamename\\"s + (aa ? "armygame" : "ut") + "\\gamever\\" + (aa ? "230" : "436") +
                       "\\hostname\\" + s.host + "\\hostport\\" + std::to_string(gamePort) + "\\mapname\\" + s.map +
                       "\\gametype\\" + s.gameType + "\\numplayers\\" + std::to_string(s.players.size()) +
                       "\\maxplayers\\" + std::to_string(s.maxPlayers) + "\\timelimit\\" + std::to_string(s.timeLimit) +
                       "\\goalteamscore\\" + std::to_string(s.captureLimit) + "\\queryid\\17.1";
    std::string players;
    for (std::size_t i = 0; i < s.players.size(); ++i) {
        const SimPlayer& p = s.players[i];
        const std::string n = std::to_string(i);
        players += "\\player_" + n + "\\" + p.name + "\\frags_" + n + "\\" + std::to_string(p.score) + "\\ping_" + n +
                   "\\" + std::to_string(p.ping) + "\\team_" + n + "\\" +
                   (p.team == 2   ? "1"
                    : p.team == 1 ? "0"
                                  : "255");
    }
    return {info, players + "\\queryid\\17.2\\final\\"};
}

std::string HalfLife(const MatchState& s, std::string_view what, int gamePort) {
    if (what == "info")
        return kOob + "C" + Z("127.0.0.1:" + std::to_string(gamePort)) + Z(s.host) + Z(s.map) + Z(s.gameName) +
               Z("Counter-Strike") + Byte(static_cast<int>(s.players.size())) + Byte(s.maxPlayers) + Byte(47);
    if (what == "players") {
        std::string reply = kOob + "D" + Byte(static_cast<int>(s.players.size()));
        for (std::size_t i = 0; i < s.players.size(); ++i)
            reply += Byte(static_cast<int>(i)) + Z(s.players[i].name) +
                     Le32(static_cast<std::uint32_t>(s.players[i].score)) + Le32(0x43480000); // 200.0 seconds connected
        return reply;
    }
    const std::string rules = Z("mp_timelimit") + Z(std::to_string(s.timeLimit)) + Z("mp_winlimit") +
                              Z(std::to_string(s.fragLimit)) + Z("mp_timeleft") + Z(s.timeText);
    return kOob + "E" + Byte(3) + Byte(0) + rules;
}

std::string FarCry(const MatchState& s, std::string_view what) {
    const std::string head = "\x7F\xFF\xFF\xFF"s;
    if (what == "status")
        return head + "S\x0E\x01\x00\x00\x00"s + Z("1.4.0.1395") + Z(s.host) + Z("1395") + Z(s.gameType) + Z(s.map) +
               Byte(static_cast<int>(s.players.size())) + Byte(s.maxPlayers);
    if (what == "players") {
        std::string reply = head + "P\x0E\x02\x00"s;
        for (const SimPlayer& p : s.players)
            reply += Z(p.name) +
                     Z(p.team == 2   ? "blue"
                       : p.team == 1 ? "red"
                                     : "") +
                     Byte(0) + Z(Byte(p.score)) + Byte(0) + Byte(0) + Z(Byte(p.ping)) + std::string(6, '\0');
        return reply;
    }
    return head + "R\x0E"s + Z("gr_scorelimit") + Z(std::to_string(s.fragLimit)) + Z("gr_timelimit") +
           Z(std::to_string(s.timeLimit));
}

// UT2003 query port: 0x80 0x00 0x00 0x00, the reply type, then the type's fields, laid out as
// Tallybot reads them:
//   0 server  id (4), empty address (one 0x00), game and query port (4 each), len name 00,
//             len map 00, len gametype 00, numplayers (4), maxplayers (4), ping (4)
//   1 rules   one flag byte, then len key 00 len value 00 ...
//   2 players per player: id (4), len name 00, ping (4), score (4)
std::string Ut2003(const MatchState& s, int type, int gamePort) {
    std::string reply = "\x80\x00\x00\x00"s + Byte(type);
    if (type == 0) {
        reply += Le32(1) + Byte(0) + Le32(static_cast<std::uint32_t>(gamePort)) +
                 Le32(static_cast<std::uint32_t>(gamePort + 1)) + Ut2Text(s.host) + Ut2Text(s.map) +
                 Ut2Text(s.gameType) + Le32(static_cast<std::uint32_t>(s.players.size())) +
                 Le32(static_cast<std::uint32_t>(s.maxPlayers)) + Le32(0);
    } else if (type == 1) {
        reply += Byte(0) + Ut2Text("AdminName") + Ut2Text("Tallybot") + Ut2Text("timelimit") +
                 Ut2Text(std::to_string(s.timeLimit)) + Ut2Text("goalscore") + Ut2Text(std::to_string(s.captureLimit));
    } else {
        for (std::size_t i = 0; i < s.players.size(); ++i)
            reply += Le32(static_cast<std::uint32_t>(i + 1)) + Ut2Text(s.players[i].name) +
                     Le32(static_cast<std::uint32_t>(s.players[i].ping)) +
                     Le32(static_cast<std::uint32_t>(s.players[i].score));
    }
    return reply;
}

// Doom 3 infoResponse: header, challenge, protocol 1.41, key/value pairs, players, 0x20.
std::string Doom3(const MatchState& s, std::string_view request) {
    std::string challenge(4, '\x01');
    const std::size_t at = request.find('\0');
    if (at != std::string_view::npos && request.size() >= at + 5) challenge = std::string(request.substr(at + 1, 4));
    std::string reply = "\xFF\xFFinfoResponse\x00"s + challenge + "\x29\x00\x01\x00"s;
    const auto add = [&](std::string_view key, const std::string& value) { reply += Z(key) + Z(value); };
    add("si_version", "DOOM 1.3.1.1304 linux-x86 Nov 21 2026");
    add("si_name", s.host);
    add("si_map", s.map);
    add("si_gameType", s.gameType);
    add("si_maxPlayers", std::to_string(s.maxPlayers));
    add("si_timeLimit", std::to_string(s.timeLimit));
    add("si_fragLimit", std::to_string(s.fragLimit));
    add("gamename", s.gameName);
    reply += std::string(2, '\0'); // an empty key and an empty value end the list
    for (std::size_t i = 0; i < s.players.size(); ++i) {
        const int ping = std::clamp(s.players[i].ping, 0, 0xFFFF);
        reply += Byte(static_cast<int>(i)) + Byte(ping & 0xFF) + Byte(ping >> 8) + Le32(25000) + Z(s.players[i].name);
    }
    return reply + "\x20"s;
}

std::vector<std::string> DisconnectPacket(int engineId) {
    switch (engineId) {
    case 1:
    case 2:
    case 5:
    case 6:
    case 7:
    case 8:
    case 11:
    case 12:
    case 13:
    case 15:
        return {kOob + "disconnect"};
    case 10:
        return {kOob + "\x01" + "disconnect"};
    case 17:
        return {"\xFF\xFF"
                "disconnect\x00"s};
    default:
        return {};
    }
}

bool IsQ3Family(int engineId) {
    return engineId == 2 || (engineId >= 5 && engineId <= 8) || (engineId >= 11 && engineId <= 13) || engineId == 15 ||
           engineId == kDarkPlacesEngineId;
}

// Which of the engine's requests this is, or empty when it is none of them.
std::string RequestKind(std::string_view request, int engineId) {
    const std::string_view oob = "\xFF\xFF\xFF\xFF"sv;
    if (engineId == 1 && StartsWith(request, kOob + "status")) return "status";
    if (IsQ3Family(engineId) && StartsWith(request, kOob + "getstatus")) return "status";
    if (IsQ3Family(engineId) && StartsWith(request, kOob + "getinfo")) return "info";
    if (engineId == 10 && StartsWith(request, kOob + "\x02getstatus")) return "status";
    if ((engineId == 3 || engineId == 14) && StartsWith(request, "\\status\\")) return "status";
    if (engineId == 4 && StartsWith(request, oob)) {
        for (const char* what : {"info", "players", "rules"})
            if (request.substr(4) == what) return what;
    }
    if (engineId == 16 && StartsWith(request, "\x7F\xFF\xFF\xFF"sv)) {
        for (const char* what : {"status", "players", "rules"})
            if (request.substr(4) == what) return what;
    }
    if (engineId == 9 && request.size() == 5 && StartsWith(request, "\x78\x00\x00\x00"sv) &&
        static_cast<unsigned char>(request[4]) <= 2)
        return std::string(1, static_cast<char>('0' + request[4]));
    if (engineId == 17 && StartsWith(request, "\xFF\xFF"sv) && StartsWithNoCase(request.substr(2), "getinfo"))
        return "status";
    return {};
}

} // namespace

std::vector<std::string> RepliesTo(std::string_view request, const MatchState& state, bool onQueryPort, int gamePort) {
    const int engineId = state.engineId;
    if (engineId == kA2SEngineId) // a Source server answers on its game port only
        return state.silent || onQueryPort ? std::vector<std::string>{} : A2SRepliesTo(request, state, gamePort);
    const std::string kind = RequestKind(request, engineId);
    if (kind.empty() || state.silent) return {};
    if (state.disconnecting) return DisconnectPacket(engineId);

    const bool splitPorts = engineId == 3 || engineId == 14 || engineId == 9;
    if (splitPorts && !onQueryPort) {
        // The game port only points at the query port: a short "@" text or the 0x00 0xC0 0xFF mark.
        return {engineId == 9 ? "\x00\xC0\xFF\x00\x00"s : "\\@\\1\\"s};
    }
    if (!splitPorts && onQueryPort) return {};

    switch (engineId) {
    case 1:
        return {Q2Status(state)};
    case 3:
    case 14:
        return GameSpyStatus(state, gamePort);
    case 4:
        return {HalfLife(state, kind, gamePort)};
    case 9:
        return {Ut2003(state, kind[0] - '0', gamePort)};
    case 16:
        return {FarCry(state, kind)};
    case 17:
        return {Doom3(state, request)};
    case kDarkPlacesEngineId:
        return {kind == "info" ? Q3Info(state) : DarkPlacesStatus(state)};
    default:
        return {kind == "info" ? Q3Info(state) : Q3Status(state)};
    }
}

} // namespace tallybot::gamesim
