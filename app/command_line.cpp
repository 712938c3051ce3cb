#include "app/command_line.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace tallybot::app {

namespace fs = std::filesystem;

namespace {

bool ParseColorChoice(const std::string& when, ColorChoice& choice) {
    if (when == "auto")
        choice = ColorChoice::Auto;
    else if (when == "always")
        choice = ColorChoice::Always;
    else if (when == "never")
        choice = ColorChoice::Never;
    else
        return false;
    return true;
}

} // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& args) {
    CommandLine line;
    std::vector<std::string> positional;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--home") {
            if (i + 1 >= args.size()) {
                line.error = "--home needs a folder";
                return line;
            }
            line.home = args[++i];
        } else if (arg.rfind("--home=", 0) == 0) {
            line.home = arg.substr(7);
        } else if (arg == "--headless") {
            line.headless = true;
        } else if (arg == "--send") {
            line.send = true;
        } else if (arg == "--version" || arg == "-V" || arg == "-v") {
            line.version = true;
        } else if (arg == "--help" || arg == "-h") {
            line.help = true;
        } else if (arg == "--raw") {
            line.raw = true;
        } else if (arg == "--color" || arg.rfind("--color=", 0) == 0) {
            const std::string when = arg.size() > 7 ? arg.substr(8) : i + 1 < args.size() ? args[++i] : "";
            if (!ParseColorChoice(when, line.color)) {
                line.error = "--color needs auto, always or never";
                return line;
            }
        } else if (arg.size() > 1 && arg[0] == '-') {
            line.error = "unknown option " + arg;
            return line;
        } else {
            positional.push_back(arg);
        }
    }
    for (const auto& word : positional) {
        if (!line.command.empty()) line.command += ' ';
        line.command += word;
    }
    if (line.send && line.command.empty())
        line.error = "--send needs a command such as DisGam";
    else if (line.send && !IsRemoteCommand(line.command))
        line.error = "unknown command " + line.command + " (ConIRC, DisIRC, ConGam or DisGam)";
    return line;
}

bool IsRemoteCommand(std::string_view text) {
    const std::string_view word = text.substr(0, 6);
    return word == "ConIRC" || word == "DisIRC" || word == "ConGam" || word == "DisGam";
}

std::string UsageText() {
    return "Usage:\n"
           "  tallybot [--home DIR] [--headless [--color=WHEN] [--raw]] [COMMAND]\n"
           "  tallybot [--home DIR] --send COMMAND\n"
           "  tallybot -V | --version | -h | --help\n"
           "\n"
           "  --home DIR     folder of Tallybot.ini, Profiles/ and Tallybot.log\n"
           "  --headless     run without a window; pane lines go to standard output\n"
           "  --color=WHEN   auto (colours on a terminal unless NO_COLOR is set), always or never\n"
           "  --raw          write pane lines as the pane holds them, IRC codes and bytes unchanged\n"
           "  --send CMD     deliver CMD to the running instance (exit 1 when none runs)\n"
           "  COMMAND        ConIRC[:server:port:channel:nick], DisIRC, ConGam[:host:port], DisGam\n";
}

bool CanOpenWindow(std::string_view display, std::string_view waylandDisplay, std::string_view qpaPlatform) {
    if (qpaPlatform.empty()) return !display.empty() || !waylandDisplay.empty();
    // A list such as "wayland;xcb" is tried in order; "xcb:option" carries plugin options.
    while (!qpaPlatform.empty()) {
        const std::size_t end = std::min(qpaPlatform.find(';'), qpaPlatform.size());
        const std::string_view entry = qpaPlatform.substr(0, end);
        const std::string_view name = entry.substr(0, entry.find(':'));
        qpaPlatform.remove_prefix(std::min(end + 1, qpaPlatform.size()));
        if (name.empty()) continue;
        if (name.rfind("xcb", 0) == 0) {
            if (!display.empty()) return true;
        } else if (name.rfind("wayland", 0) == 0) {
            if (!waylandDisplay.empty()) return true;
        } else {
            return true;
        }
    }
    return false;
}

std::string ResolveHomeFolder(const std::string& explicitHome, const std::string& programFolder,
                              const std::string& xdgConfigHome, const std::string& userHome) {
    if (!explicitHome.empty()) return explicitHome;
    // An installed program (with share/tallybot beside its bin folder) never writes into bin/.
    std::error_code ec;
    const bool installed =
        !programFolder.empty() && fs::is_directory(fs::path(programFolder) / ".." / "share" / "tallybot", ec);
    if (!installed && !programFolder.empty() && access(programFolder.c_str(), W_OK) == 0) return programFolder;
    if (!xdgConfigHome.empty()) return (fs::path(xdgConfigHome) / "tallybot").string();
    return (fs::path(userHome) / ".config" / "tallybot").string();
}

std::string PrepareHomeFolder(const std::string& home, const std::vector<std::string>& profileSources) {
    std::error_code ec;
    fs::create_directories(home, ec);
    const fs::path profiles = fs::path(home) / "Profiles";
    if (!fs::exists(profiles, ec)) {
        for (const auto& source : profileSources) {
            if (source.empty() || !fs::is_directory(source, ec) || fs::equivalent(source, profiles, ec)) continue;
            fs::create_directories(profiles, ec);
            for (const auto& entry : fs::directory_iterator(source, ec))
                if (entry.path().extension() == ".igp")
                    fs::copy_file(entry.path(), profiles / entry.path().filename(), fs::copy_options::skip_existing,
                                  ec);
            break;
        }
    }
    std::string folder = fs::path(home).string();
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

} // namespace tallybot::app
