#include "gui/window_program.h"

#include "gui/frm_main.h"

#include <QDir>
#include <QStandardPaths>

namespace tallybot::app {

WindowProgram::WindowProgram(desktop::MessageBoxes& boxes, const QString& downloadFolder)
    : m_boxes(boxes), m_questions(boxes, downloadFolder), m_runtime(&m_questions, &m_files) {}

WindowProgram::~WindowProgram() {
    // The window observes the runtime's logic: it goes first.
    m_questions.SetParent(nullptr);
    m_window.reset();
}

bool WindowProgram::Start(const StartupOptions& options) {
    const bool listening = m_runtime.Start(options);
    m_window = std::make_unique<frmMain>(m_runtime.Logic(), m_boxes);
    m_questions.SetParent(m_window.get());
    QObject::connect(&m_runtime, &AppRuntime::ViewChanged, m_window.get(), [this] { m_window->Refresh(); });
    return listening;
}

QString DefaultDownloadFolder() {
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return downloads.isEmpty() ? QDir::homePath() : downloads;
}

} // namespace tallybot::app
