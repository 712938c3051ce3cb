#pragma once
// The windowed program's objects, wired the way the window runs them: the operator answers DCC
// offers in message boxes, the files go through QFile, the runtime owns the sockets and the timers,
// and the main window observes the runtime. The window module's entry and the GUI tests build this
// same object, so a test drives exactly what the operator uses.

#include "app/qt/app_runtime.h"
#include "gui/window_dcc_questions.h"
#include "irc/qt/dcc_file_sink.h"

#include <memory>

namespace tallybot::desktop {
class MessageBoxes;
}

namespace tallybot::app {

class frmMain;

class WindowProgram {
public:
    // downloadFolder: where the first "Save file..." dialog opens.
    WindowProgram(desktop::MessageBoxes& boxes, const QString& downloadFolder);
    ~WindowProgram();
    WindowProgram(const WindowProgram&) = delete;
    WindowProgram& operator=(const WindowProgram&) = delete;

    // Start-up (settings, profiles, the remote-control channel), then the main window over it.
    // False when another instance already listens on the home's remote-control channel.
    bool Start(const StartupOptions& options);

    AppRuntime& Runtime() { return m_runtime; }
    frmMain& Window() { return *m_window; }

private:
    desktop::MessageBoxes& m_boxes;
    desktop::WindowDccQuestions m_questions;
    irc::QtDccFileSink m_files;
    AppRuntime m_runtime;
    std::unique_ptr<frmMain> m_window;
};

// The user's download folder, or the home folder when the desktop names none.
QString DefaultDownloadFolder();

} // namespace tallybot::app
