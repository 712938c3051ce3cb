#pragma once
// The command line: tallybot [--home DIR] [--headless [--color=WHEN] [--raw]] [COMMAND]
// | --send COMMAND | --version | --help.

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::app {

// --color: colours on standard output when it is a terminal (auto), always, or never.
enum class ColorChoice { Auto, Always, Never };

struct CommandLine {
    std::string home; // empty: the default home folder
    bool headless = false;
    bool send = false; // deliver `command` to the running instance and exit
    bool version = false;
    bool help = false;
    ColorChoice color = ColorChoice::Auto;
    bool raw = false;    // headless lines exactly as the pane holds them
    std::string command; // positional arguments joined by blanks: the remote-control text
    std::string error;   // set when the arguments make no sense

    bool operator==(const CommandLine&) const = default;
};

CommandLine ParseCommandLine(const std::vector<std::string>& args); // args without the program name
std::string UsageText();
// The four command words a running instance acts on (the first six characters of the text).
bool IsRemoteCommand(std::string_view text);

// Whether a window can open: a Qt platform that needs no display server (offscreen, eglfs, ...)
// is named in QT_QPA_PLATFORM, or the display that xcb or Wayland needs is set.
bool CanOpenWindow(std::string_view display, std::string_view waylandDisplay, std::string_view qpaPlatform);

// The folder that holds Tallybot.ini, Profiles/ and Tallybot.log: --home when given, else the
// program's folder when writable and not an installed bin/ folder, else $XDG_CONFIG_HOME/tallybot
// (~/.config/tallybot).
std::string ResolveHomeFolder(const std::string& explicitHome, const std::string& programFolder,
                              const std::string& xdgConfigHome, const std::string& userHome);
// Creates the folder and, when it has no Profiles/ yet, copies the shipped profiles from the first
// of `profileSources` that exists. Returns the folder with a trailing separator.
std::string PrepareHomeFolder(const std::string& home, const std::vector<std::string>& profileSources);

} // namespace tallybot::app
