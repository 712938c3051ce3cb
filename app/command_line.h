#pragma once
// The command line: tallybot [--home DIR] [--headless] [COMMAND] | --send COMMAND | --version | --help.

#include <string>
#include <vector>

namespace tallybot::app {

struct CommandLine {
    std::string home;     // empty: the default home folder
    bool headless = false;
    bool send = false;    // deliver `command` to the running instance and exit
    bool version = false;
    bool help = false;
    std::string command;  // positional arguments joined by blanks: the remote-control text
    std::string error;    // set when the arguments make no sense

    bool operator==(const CommandLine&) const = default;
};

CommandLine ParseCommandLine(const std::vector<std::string>& args); // args without the program name
std::string UsageText();

// The folder that holds Tallybot.ini, Profiles/ and Tallybot.log: --home when given, else the
// program's folder when writable and not an installed bin/ folder, else $XDG_CONFIG_HOME/tallybot
// (~/.config/tallybot).
std::string ResolveHomeFolder(const std::string& explicitHome, const std::string& programFolder,
                              const std::string& xdgConfigHome, const std::string& userHome);
// Creates the folder and, when it has no Profiles/ yet, copies the shipped profiles from the first
// of `profileSources` that exists. Returns the folder with a trailing separator.
std::string PrepareHomeFolder(const std::string& home, const std::vector<std::string>& profileSources);

} // namespace tallybot::app
