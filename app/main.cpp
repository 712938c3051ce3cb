// Entry point: the command line, then the headless runner here or the window from its module.
// This executable links no GUI library, so the headless runner maps none.
#include "app/command_line.h"
#include "app/qt/app_runtime.h"
#include "app/qt/headless_runner.h"
#include "app/qt/headless_shell.h"
#include "app/qt/program_start.h"
#include "app/qt/window_module.h"

#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

#include <QCoreApplication>

namespace {

using namespace tallybot::app;

int RunHeadless(const CommandLine& line, const ProgramPlace& place) {
    HeadlessShell shell;
    const StartupOptions options = PrepareStartup(line, place, shell);
    AppRuntime runtime;
    HeadlessRunner runner(runtime, ::isatty(STDOUT_FILENO) == 1);
    runner.CatchSignals();
    if (!runtime.Start(options)) std::fprintf(stderr, "tallybot: remote control unavailable for this home\n");
    runner.Start(line.command);
    return QCoreApplication::exec();
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
    if (!line.headless && !line.send) return RunWindowModule(argc, argv, line);

    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("tallybot");
    const ProgramPlace place = LocateProgram(line);
    if (const auto delivered = DeliverToRunning(line, place)) return *delivered;
    return RunHeadless(line, place);
}
