#include "match_script.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace tallybot::gamesim {

namespace {

// 19, "DP", is the simulator's own: a DarkPlaces (Xonotic) server, which Tallybot reads as Q3.
const char* const kEngineCodes[] = {"",    "Q2", "Q3", "UT",  "HL", "RTCW", "EF", "JK2", "SoF2", "UT2k3",
                                    "MoH", "ET", "JA", "CoD", "AA", "EF2",  "FC", "D3",  "A2S",  "DP"};

std::string Lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

int ToInt(const std::string& text, const std::string& what) {
    try {
        std::size_t used = 0;
        const int value = std::stoi(text, &used);
        if (used == text.size()) return value;
    } catch (const std::exception&) {
    }
    throw ScriptError(what + " must be a number: \"" + text + "\"");
}

int ToTeam(const std::string& text) {
    const std::string team = Lower(text);
    if (team == "red" || team == "1") return 1;
    if (team == "blue" || team == "2") return 2;
    if (team == "none" || team == "0") return 0;
    throw ScriptError("team must be red, blue or none: \"" + text + "\"");
}

SimPlayer& FindPlayer(MatchState& state, const std::string& name) {
    const auto it =
        std::find_if(state.players.begin(), state.players.end(), [&](const SimPlayer& p) { return p.name == name; });
    if (it == state.players.end()) throw UnknownPlayer("no player named \"" + name + "\"");
    return *it;
}

} // namespace

int EngineIdOfCode(const std::string& code) {
    for (int id = 1; id <= 19; ++id)
        if (Lower(kEngineCodes[id]) == Lower(code)) return id;
    return 0;
}

void ApplyCommand(MatchState& state, const std::string& line) {
    std::istringstream in(line);
    std::string command;
    in >> command;
    command = Lower(command);
    std::string rest;
    std::getline(in, rest);
    rest = Trim(rest);
    std::vector<std::string> args;
    for (std::istringstream words(rest); !words.eof();) {
        std::string word;
        if (words >> word) args.push_back(word);
    }
    const auto need = [&](std::size_t count) {
        if (args.size() != count)
            throw ScriptError(command + " takes " + std::to_string(count) + " argument(s), got " +
                              std::to_string(args.size()));
    };

    if (command == "engine") {
        need(1);
        state.engineId = EngineIdOfCode(args[0]);
        if (state.engineId == 0) throw ScriptError("unknown engine \"" + args[0] + "\"");
    } else if (command == "host") {
        state.host = rest;
    } else if (command == "map") {
        state.map = rest;
    } else if (command == "gametype") {
        state.gameType = rest;
    } else if (command == "version") {
        state.version = rest;
    } else if (command == "gamename") {
        state.gameName = rest;
    } else if (command == "time") {
        state.timeText = rest;
    } else if (command == "timelimit") {
        need(1);
        state.timeLimit = ToInt(args[0], command);
    } else if (command == "fraglimit") {
        need(1);
        state.fragLimit = ToInt(args[0], command);
    } else if (command == "capturelimit") {
        need(1);
        state.captureLimit = ToInt(args[0], command);
    } else if (command == "maxplayers") {
        need(1);
        state.maxPlayers = ToInt(args[0], command);
    } else if (command == "teamscore") {
        need(2);
        state.scoreRed = ToInt(args[0], "red score");
        state.scoreBlue = ToInt(args[1], "blue score");
    } else if (command == "player") {
        need(4);
        SimPlayer player{args[0], ToTeam(args[1]), ToInt(args[2], "score"), ToInt(args[3], "ping")};
        const auto it = std::find_if(state.players.begin(), state.players.end(),
                                     [&](const SimPlayer& p) { return p.name == player.name; });
        if (it != state.players.end())
            *it = player;
        else
            state.players.push_back(player);
    } else if (command == "score") {
        need(2);
        FindPlayer(state, args[0]).score = ToInt(args[1], "score");
    } else if (command == "ping") {
        need(2);
        FindPlayer(state, args[0]).ping = ToInt(args[1], "ping");
    } else if (command == "team") {
        need(2);
        FindPlayer(state, args[0]).team = ToTeam(args[1]);
    } else if (command == "leave") {
        need(1);
        FindPlayer(state, args[0]); // must exist
        std::erase_if(state.players, [&](const SimPlayer& p) { return p.name == args[0]; });
    } else if (command == "silence") {
        state.silent = true;
    } else if (command == "resume") {
        state.silent = false;
        state.disconnecting = false;
    } else if (command == "disconnect") {
        state.disconnecting = true;
    } else {
        throw ScriptError("unknown command \"" + command + "\"");
    }
}

MatchScript ParseScript(const std::string& text) {
    MatchScript script;
    std::istringstream in(text);
    std::string line;
    MatchState probe;
    for (int number = 1; std::getline(in, line); ++number) {
        line = Trim(line.substr(0, line.find('#')));
        if (line.empty()) continue;
        try {
            if (Lower(line.substr(0, 3)) == "at ") {
                std::istringstream timed(line.substr(3));
                double at = 0;
                if (!(timed >> at) || at < 0) throw ScriptError("\"at\" needs a time in seconds");
                std::string command;
                std::getline(timed, command);
                command = Trim(command);
                try { // reject bad commands now, not mid-match; who is playing depends on timing
                    ApplyCommand(probe, command);
                } catch (const UnknownPlayer&) {
                }
                script.timed.push_back({at, command});
            } else {
                ApplyCommand(script.start, line);
                probe = script.start;
            }
        } catch (const ScriptError& e) {
            throw ScriptError("line " + std::to_string(number) + ": " + e.what());
        }
    }
    return script;
}

MatchState StateAt(const MatchScript& script, double seconds) {
    MatchState state = script.start;
    for (const TimedCommand& command : script.timed) {
        if (command.at > seconds) continue;
        try {
            ApplyCommand(state, command.line);
        } catch (const UnknownPlayer&) {
            // a player already gone at that moment: nothing to change
        }
    }
    return state;
}

} // namespace tallybot::gamesim
