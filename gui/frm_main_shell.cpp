#include "gui/frm_main_shell.h"

#include "gui/frm_main.h"

#include <cstdio>

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPixmap>
#include <QTimer>
#include <QUrl>

namespace tallybot::app {

void FrmMainShell::ShowMessage(const std::string& text, const std::string& title) {
    QMessageBox::warning(QApplication::activeWindow(), QString::fromLatin1(title.c_str()),
                         QString::fromLatin1(text.c_str()));
}

bool FrmMainShell::AskYesNo(const std::string& text, const std::string& title) {
    return QMessageBox::question(QApplication::activeWindow(), QString::fromLatin1(title.c_str()),
                                 QString::fromLatin1(text.c_str()), QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void FrmMainShell::OpenExternal(const std::string& url) {
    QDesktopServices::openUrl(QUrl::fromUserInput(QString::fromLatin1(url.c_str())));
}

void ScheduleScreenshot(frmMain& window) {
    const QString file = qEnvironmentVariable("TALLYBOT_SCREENSHOT");
    if (file.isEmpty()) return;
    bool ok = false;
    int after = qEnvironmentVariableIntValue("TALLYBOT_SCREENSHOT_AFTER_MS", &ok);
    if (!ok || after < 0) after = 4000;
    // TALLYBOT_SCREENSHOT_SIZE=WxH sizes the window first, to see the layout at a given size.
    const QStringList size = qEnvironmentVariable("TALLYBOT_SCREENSHOT_SIZE").split('x');
    if (size.size() == 2 && size[0].toInt() > 0 && size[1].toInt() > 0) window.resize(size[0].toInt(), size[1].toInt());
    QTimer::singleShot(after, &window, [&window, file] {
        if (!window.grab().save(file, "PNG"))
            std::fprintf(stderr, "tallybot: could not write %s\n", file.toLocal8Bit().constData());
        window.close();
    });
}

} // namespace tallybot::app
