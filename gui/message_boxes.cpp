#include "gui/message_boxes.h"

#include <QInputDialog>
#include <QMessageBox>

namespace tallybot::desktop {

void QtMessageBoxes::Show(QWidget* parent, const QString& title, const QString& text) {
    QMessageBox::information(parent, title, text);
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

} // namespace tallybot::desktop
