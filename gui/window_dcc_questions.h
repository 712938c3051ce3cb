#pragma once
// The window's answers to a DCC offer: the IRC core's questions become message boxes over the main
// window, and the save dialog proposes the offered (already reduced) name in the folder chosen last,
// so that every file lands only where the operator pointed.

#include "irc/irc_transport.h"

#include <QPointer>
#include <QString>
#include <QWidget>

namespace tallybot::desktop {

class MessageBoxes;

class WindowDccQuestions final : public irc::DccQuestions {
public:
    // folder: where the first save dialog opens (the home folder's downloads, say).
    WindowDccQuestions(MessageBoxes& boxes, QString folder);

    // The window the boxes belong to; set once it exists (the runtime is built before it).
    void SetParent(QWidget* parent) { m_parent = parent; }

    bool AskYesNo(const std::string& title, const std::string& text) override;
    std::optional<std::string> ChooseSaveFile(const std::string& title, const std::string& proposedName) override;

private:
    MessageBoxes& m_boxes;
    QString m_folder;
    QPointer<QWidget> m_parent;
};

} // namespace tallybot::desktop
