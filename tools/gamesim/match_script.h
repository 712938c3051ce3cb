#pragma once
// The scripted match the simulator plays: a start state and timed commands, read from a small
// line-based text. Each line is one command; "at SECONDS COMMAND" delays it, "#" starts a comment.
//
//   engine Q3                     host ^1Red ^4Fort            map q3ctf1
//   gametype 4                    gamename baseq3              time 20:00
//   timelimit 20                  fraglimit 0                  capturelimit 8
//   maxplayers 16                 teamscore 0 0                player Alice red 0 50
//   score Alice 3                 ping Alice 80                team Alice blue
//   leave Alice                   silence                      resume
//   disconnect                    at 4 time TIMEOUT RED        version ioq3 1.36_GIT linux

#include <stdexcept>
#include <string>
#include <vector>

namespace tallybot::gamesim {

struct SimPlayer {
    std::string name;
    int team = 0; // 0 none, 1 red, 2 blue
    int score = 0;
    int ping = 0;
};

struct MatchState {
    int engineId = 2;
    std::string host = "Tallybot Test Server";
    std::string map = "q3ctf1";
    std::string gameType = "4";
    std::string gameName = "baseq3";
    std::string timeText = "20:00";
    std::string version; // the status reply's version text; empty: the engine's own
    int timeLimit = 20;
    int fragLimit = 0;
    int captureLimit = 8;
    int maxPlayers = 16;
    int scoreRed = 0;
    int scoreBlue = 0;
    std::vector<SimPlayer> players;
    bool silent = false;
    bool disconnecting = false;
};

struct TimedCommand {
    double at = 0;
    std::string line;
};

struct MatchScript {
    MatchState start;
    std::vector<TimedCommand> timed; // in the order of the script
};

class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A command naming a player who is not (or no longer) in the match.
class UnknownPlayer : public ScriptError {
public:
    using ScriptError::ScriptError;
};

// Engine id of an engine code ("Q3", "UT2k3", "A2S" for a Source server, case-insensitive); 0 when
// unknown.
int EngineIdOfCode(const std::string& code);

// Applies one command line to the state; throws ScriptError naming what is wrong.
void ApplyCommand(MatchState& state, const std::string& line);

// Reads a whole script; errors name the line number.
MatchScript ParseScript(const std::string& text);

// The state after every timed command due at or before the given second.
MatchState StateAt(const MatchScript& script, double seconds);

} // namespace tallybot::gamesim
