#include "app/qt/program_start.h"

#include "app/qt/remote_server.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <QCoreApplication>
#include <QString>

namespace tallybot::app {
namespace {

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Where the shipped profiles may be: installed beside bin/ (cmake --install, the .deb), in a build
// tree's bin/Profiles, under the prefix this build installs to, or in the source tree.
std::vector<std::string> ProfileSources(const std::string& programFolder) {
    return {programFolder + "/../share/tallybot/Profiles",
            programFolder + "/Profiles",
            std::string(TALLYBOT_INSTALL_PREFIX) + "/share/tallybot/Profiles",
            "/usr/local/share/tallybot/Profiles",
            "/usr/share/tallybot/Profiles",
            programFolder + "/../../profiles/default",
            programFolder + "/../../../profiles/default"};
}

} // namespace

ProgramPlace LocateProgram(const CommandLine& line) {
    ProgramPlace place;
    place.programFolder = QCoreApplication::applicationDirPath().toStdString();
    place.home = ResolveHomeFolder(line.home, place.programFolder, Env("XDG_CONFIG_HOME"), Env("HOME"));
    return place;
}

std::optional<int> DeliverToRunning(const CommandLine& line, const ProgramPlace& place) {
    const QString homeText = QString::fromLocal8Bit(place.home.c_str());
    if (line.send) return RemoteServer::Send(homeText, line.command) ? 0 : 1;
    if (!line.command.empty() && RemoteServer::Send(homeText, line.command)) return 0;
    return std::nullopt;
}

StartupOptions PrepareStartup(const CommandLine& line, const ProgramPlace& place, base::OperatorShell& shell) {
    StartupOptions options;
    options.home = PrepareHomeFolder(place.home, ProfileSources(place.programFolder));
    options.shell = &shell;
    options.facts = base::CollectSystemFacts();
    options.commandLine = line.command;
    return options;
}

void WarnWhenNoProfiles(MainLogic& logic) {
    if (logic.Settings().Profiles.ProfileCount > 0) return;
    const std::string text = "No game profile in " + logic.Settings().AppPath +
                             "Profiles/: nothing is reported for a match until a profile is there "
                             "(the shipped ones are in share/tallybot/Profiles of the installation)";
    if (logic.Log() != nullptr) logic.Log()->Log("modMain", "Main", 0, text);
    std::fprintf(stderr, "tallybot: warning: %s\n", text.c_str());
    std::fflush(stderr);
}

} // namespace tallybot::app
