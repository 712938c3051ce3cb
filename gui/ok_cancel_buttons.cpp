#include "gui/ok_cancel_buttons.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

namespace tallybot::desktop {

QDialogButtonBox* OkCancelButtons(QDialog* dialog, std::function<bool()> confirm) {
    auto* ok = new QPushButton("OK");
    ok->setObjectName("cmdOK");
    auto* cancel = new QPushButton("Cancel");
    cancel->setObjectName("cmdCancel");
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    QObject::connect(ok, &QPushButton::clicked, dialog, [dialog, confirm = std::move(confirm)] {
        if (confirm()) dialog->accept();
    });
    QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    return buttons;
}

void MakeDefaultButton(QDialog& dialog, QPushButton& button) {
    for (QPushButton* other : dialog.findChildren<QPushButton*>()) {
        other->setAutoDefault(false);
        other->setDefault(false);
    }
    button.setAutoDefault(true);
    button.setDefault(true);
}

} // namespace tallybot::desktop
