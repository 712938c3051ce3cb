#include "gui/message_boxes.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace tallybot::desktop {

void QtMessageBoxes::Show(QWidget* parent, const QString& title, const QString& text, BoxIcon icon) {
    if (icon == BoxIcon::Warning) {
        QMessageBox::warning(parent, title, text);
    } else {
        QMessageBox::information(parent, title, text);
    }
}

bool QtMessageBoxes::AskYesNo(QWidget* parent, const QString& title, const QString& question) {
    return QMessageBox::question(parent, title, question, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

std::optional<QString> QtMessageBoxes::AskText(QWidget* parent, const QString& title, const QString& prompt) {
    bool ok = false;
    const QString text = QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, QString(), &ok);
    if (!ok) return std::nullopt;
    return text;
}

SaveChoice QtMessageBoxes::AskSaveChanges(QWidget* parent, const QString& title, const QString& question) {
    switch (QMessageBox::question(parent, title, question,
                                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save)) {
    case QMessageBox::Save:
        return SaveChoice::Save;
    case QMessageBox::Discard:
        return SaveChoice::Discard;
    default:
        return SaveChoice::Cancel;
    }
}

std::optional<QString> QtMessageBoxes::ChooseSaveFile(QWidget* parent, const QString& title,
                                                      const QString& proposedPath) {
    const QString chosen = QFileDialog::getSaveFileName(parent, title, proposedPath, QString(), nullptr,
                                                        QFileDialog::DontConfirmOverwrite);
    if (chosen.isEmpty()) return std::nullopt;
    return chosen;
}

} // namespace tallybot::desktop
