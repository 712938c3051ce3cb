#include "tests/support/qt_wait.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace tallybot::testsupport {

bool WaitUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline) {
    if (predicate()) return true;
    QDeadlineTimer until(deadline);
    // The wake-up timer bounds each blocking wait, so the deadline and outside state are rechecked.
    QTimer wake;
    wake.setInterval(10);
    wake.start();
    while (!until.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (predicate()) return true;
    }
    return predicate();
}

void ProcessPendingEvents() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace tallybot::testsupport
