#include "gui/frm_about.h"

#include "gui/message_boxes.h"
#include "gui/ok_cancel_buttons.h"
#include "reporting/templates.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tallybot::desktop {

frmAbout::frmAbout(bool keepOnTop, QWidget* parent) : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle("About Tallybot");
    if (keepOnTop) setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* title =
        new QLabel(QString("<b style='font-size:16pt'>Tallybot</b> %1").arg(FromBytes(reporting::ProgramVersion())));
    title->setObjectName("lblTitle");
    auto* text = new QLabel("Polls one game server and reports the match to one IRC channel: captures, "
                            "match starts and ends, interval reports and answers to channel commands.");
    text->setObjectName("lblDescription");
    text->setWordWrap(true);
    auto* qt = new QLabel(QString("Built with Qt %1.").arg(QT_VERSION_STR));
    qt->setObjectName("lblQtVersion");
    auto* ok = new QPushButton("OK");
    ok->setObjectName("cmdOK");
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(qt);
    layout->addStretch();
    layout->addLayout(buttons);
    setFixedSize(400, 200);
    MakeDefaultButton(*this, *ok);
}

} // namespace tallybot::desktop
