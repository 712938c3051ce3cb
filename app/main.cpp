// Entry point: the command line, then the headless runner here or the window from its module.
// This executable links no GUI library, so the headless runner maps none.
#include "app/command_line.h"
#include "app/qt/app_runtime.h"
#include "app/qt/headless_runner.h"
#include "app/qt/headless_shell.h"
#include "app/qt/program_start.h"
#include "app/qt/window_module.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

#include <QCoreApplication>

namespace {

using namespace tallybot::app;

const char* Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

int RunHeadless(const CommandLine& line, const ProgramPlace& place) {
    HeadlessShell shell;
    const StartupOptions options = PrepareStartup(line, place, shell);
    AppRuntime runtime;
    const OutputStyle style = ChooseOutputStyle(line.color, line.raw, ::isatty(STDOUT_FILENO) == 1, *Env("NO_COLOR"));
    HeadlessRunner runner(runtime, style);
    runner.CatchSignals();
    if (!runtime.Start(options)) std::fprintf(stderr, "tallybot: remote control unavailable for this home\n");
    WarnWhenNoProfiles(runtime.Logic());
    runner.Start(line.command);
    return QCoreApplication::exec();
}

// Qt ends the process with abort() when its platform plugin cannot start (an X server gone from
// behind DISPLAY, a plugin missing): said plainly instead, with the way out, and exit status 2.
// The window module restores Qt's own handler once its application object stands.
void ExitWhenTheWindowCannotOpen(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray text = qFormatLogMessage(type, context, message).toLocal8Bit();
    std::fprintf(stderr, "%s\n", text.constData());
    if (type != QtFatalMsg) return;
    std::fprintf(stderr, "tallybot: the window cannot open here; run it with --headless\n");
    std::fflush(stderr);
    std::_Exit(2);
}

// A command for an instance already running on this home needs no window: it is delivered with
// Qt Core alone, before the window module (and any GUI library) is loaded.
bool DeliveredWithoutWindow(int& argc, char** argv, const CommandLine& line) {
    if (line.command.empty()) return false;
    QCoreApplication app(argc, argv);
    return DeliverToRunning(line, LocateProgram(line)).has_value();
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
    if (!line.headless && !line.send) {
        if (DeliveredWithoutWindow(argc, argv, line)) return 0;
        if (!CanOpenWindow(Env("DISPLAY"), Env("WAYLAND_DISPLAY"), Env("QT_QPA_PLATFORM"))) {
            std::fprintf(stderr, "tallybot: no display for the window (DISPLAY and WAYLAND_DISPLAY are not set) "
                                 "and no instance running on this home; run it with --headless\n");
            return 2;
        }
        qInstallMessageHandler(ExitWhenTheWindowCannotOpen);
        return RunWindowModule(argc, argv, line);
    }

    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("tallybot");
    const ProgramPlace place = LocateProgram(line);
    if (const auto delivered = DeliverToRunning(line, place)) return *delivered;
    return RunHeadless(line, place);
}
