// The window module's entry: the windowed program on its own QApplication. The executable loads
// this module only when it is asked for the window.
#include "app/command_line.h"
#include "app/qt/app_runtime.h"
#include "app/qt/program_start.h"
#include "app/qt/window_module.h"
#include "gui/frm_main.h"
#include "gui/frm_main_shell.h"
#include "gui/message_boxes.h"
#include "gui/tallybot_icon.h"
#include "gui/window_program.h"

#include <cstdio>

#include <QApplication>

namespace {

using namespace tallybot::app;

int RunWindow(const CommandLine& line, const ProgramPlace& place) {
    FrmMainShell shell;
    const StartupOptions options = PrepareStartup(line, place, shell);
    tallybot::desktop::QtMessageBoxes boxes;
    WindowProgram program(boxes, DefaultDownloadFolder());
    if (!program.Start(options)) std::fprintf(stderr, "tallybot: remote control unavailable for this home\n");
    AppRuntime& runtime = program.Runtime();
    WarnWhenNoProfiles(runtime.Logic());
    frmMain& window = program.Window();
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

extern "C" [[gnu::visibility("default")]] int tallybot_window_main(int* argc, char** argv, const CommandLine* line) {
    // Checks the entry against the type the executable calls it through.
    [[maybe_unused]] const WindowMainFunction self = &tallybot_window_main;
    QApplication app(*argc, argv);
    qInstallMessageHandler(nullptr); // the platform started: Qt's own handling of messages again
    QCoreApplication::setApplicationName("tallybot");
    QApplication::setWindowIcon(tallybot::desktop::TallybotIcon()); // dialogs and message boxes too
    const ProgramPlace place = LocateProgram(*line);
    if (const auto delivered = DeliverToRunning(*line, place)) return *delivered;
    return RunWindow(*line, place);
}
