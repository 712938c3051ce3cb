// Entry point: the command line, the home folder, then the window or the headless runner.
#include "app/command_line.h"
#include "app/qt/app_runtime.h"
#include "app/qt/frm_main.h"
#include "app/qt/frm_main_shell.h"
#include "app/qt/headless_runner.h"
#include "app/qt/headless_shell.h"
#include "desktop/message_boxes.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include <QApplication>
#include <QCoreApplication>

namespace {

using namespace tallybot::app;

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Where the shipped profiles may be, installed or in a build tree.
std::vector<std::string> ProfileSources(const std::string& programFolder) {
    return {programFolder + "/../share/tallybot/Profiles", programFolder + "/profiles",
            programFolder + "/../../profiles/default", programFolder + "/../../../profiles/default"};
}

int RunInstance(const CommandLine& line, const std::string& home, const std::string& programFolder) {
    HeadlessShell shell;
    FrmMainShell windowShell;
    StartupOptions options;
    options.home = PrepareHomeFolder(home, ProfileSources(programFolder));
    options.shell = line.headless ? static_cast<OperatorShell*>(&shell) : &windowShell;
    options.facts = CollectSystemFacts();
    options.commandLine = line.command;

    AppRuntime runtime;
    if (line.headless) {
        HeadlessRunner runner(runtime, ::isatty(STDOUT_FILENO) == 1);
        runner.CatchSignals();
        if (!runtime.Start(options)) std::fprintf(stderr, "tallybot: remote control unavailable for this home\n");
        runner.Start(line.command);
        return QCoreApplication::exec();
    }
    if (!runtime.Start(options)) std::fprintf(stderr, "tallybot: remote control unavailable for this home\n");
    tallybot::desktop::QtMessageBoxes boxes;
    frmMain window(runtime.Logic(), boxes);
    QObject::connect(&runtime, &AppRuntime::ViewChanged, &window, [&window] { window.Refresh(); });
    // The window may hide in the tray while a dialog closes: only the window's own close ends the run.
    QApplication::setQuitOnLastWindowClosed(false);
    window.CloseRequested = [&runtime] {
        runtime.Shutdown();
        QCoreApplication::quit();
    };
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &runtime, [&runtime] { runtime.Shutdown(); });
    window.Form_Activate();
    ScheduleScreenshot(window);
    if (!line.command.empty()) runtime.Logic().HandleRemote(line.command);
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[]) {
    const CommandLine line = ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    if (!line.error.empty()) {
        std::fprintf(stderr, "tallybot: %s\n%s", line.error.c_str(), UsageText().c_str());
        return 2;
    }
    if (line.help) {
        std::printf("%s", UsageText().c_str());
        return 0;
    }
    if (line.version) {
        std::printf("tallybot %s\n", TALLYBOT_VERSION);
        return 0;
    }

    std::unique_ptr<QCoreApplication> app;
    if (line.headless || line.send)
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setApplicationName("tallybot");

    const std::string programFolder = QCoreApplication::applicationDirPath().toStdString();
    const std::string home = ResolveHomeFolder(line.home, programFolder, Env("XDG_CONFIG_HOME"), Env("HOME"));
    const QString homeText = QString::fromLocal8Bit(home.c_str());

    if (line.send) return RemoteServer::Send(homeText, line.command) ? 0 : 1;
    // A command for an instance that already runs on this home goes there.
    if (!line.command.empty() && RemoteServer::Send(homeText, line.command)) return 0;
    return RunInstance(line, home, programFolder);
}
