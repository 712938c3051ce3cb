#include "gui/frm_main_shell.h"

#include "gui/frm_main.h"

#include <cstdio>

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QMessageBox>
#include <QPixmap>
#include <QTabWidget>
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
    const auto save = [file](QWidget& widget) {
        if (!widget.grab().save(file, "PNG"))
            std::fprintf(stderr, "tallybot: could not write %s\n", file.toLocal8Bit().constData());
    };
    // TALLYBOT_SCREENSHOT_OPTIONS=<tab title> grabs the Options dialog on that page instead.
    const QString page = qEnvironmentVariable("TALLYBOT_SCREENSHOT_OPTIONS");
    if (!page.isEmpty()) {
        window.RunDialog = [save, page](QDialog& dialog) {
            if (auto* tabs = dialog.findChild<QTabWidget*>("sstOptions"))
                for (int i = 0; i < tabs->count(); ++i)
                    if (tabs->tabText(i) == page) tabs->setCurrentIndex(i);
            dialog.show();
            QCoreApplication::processEvents();
            save(dialog);
        };
    }
    QTimer::singleShot(after, &window, [&window, save, page] {
        if (page.isEmpty()) {
            save(window);
        } else {
            window.mnuExtrasOptions_Click();
        }
        window.close();
    });
}

} // namespace tallybot::app
