#include "gui/window_dcc_questions.h"

#include "gui/message_boxes.h"

#include <QDir>
#include <QFileInfo>

namespace tallybot::desktop {

WindowDccQuestions::WindowDccQuestions(MessageBoxes& boxes, QString folder)
    : m_boxes(boxes), m_folder(std::move(folder)) {}

bool WindowDccQuestions::AskYesNo(const std::string& title, const std::string& text) {
    return m_boxes.AskYesNo(m_parent, FromBytes(title), FromBytes(text));
}

std::optional<std::string> WindowDccQuestions::ChooseSaveFile(const std::string& title,
                                                              const std::string& proposedName) {
    const QString proposed = QDir(m_folder).filePath(FromBytes(proposedName));
    const std::optional<QString> chosen = m_boxes.ChooseSaveFile(m_parent, FromBytes(title), proposed);
    if (!chosen || chosen->isEmpty()) return std::nullopt;
    const QFileInfo file(*chosen);
    m_folder = file.absolutePath(); // the next offer opens where this one went
    return ToBytes(file.absoluteFilePath());
}

} // namespace tallybot::desktop
