#include "irc/qt/qt_irc_clock.h"

#include <chrono>

#include <QDateTime>

namespace tallybot::irc {
namespace {

LocalTime ToLocalTime(const QDateTime& when) {
    const QDate date = when.date();
    const QTime time = when.time();
    LocalTime local;
    local.Year = date.year();
    local.Month = date.month();
    local.Day = date.day();
    local.Weekday = date.dayOfWeek() % 7; // Qt counts Monday 1 .. Sunday 7
    local.Hour = time.hour();
    local.Minute = time.minute();
    local.Second = time.second();
    return local;
}

} // namespace

std::uint32_t QtIrcClock::TickCount() const {
    // Milliseconds since the monotonic clock's start (boot on Linux), wrapping at 32 bits as a tick count does.
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

LocalTime QtIrcClock::Now() const {
    return ToLocalTime(QDateTime::currentDateTime());
}

LocalTime QtIrcClock::FromEpoch(std::int64_t seconds) const {
    return ToLocalTime(QDateTime::fromSecsSinceEpoch(seconds).toLocalTime());
}

} // namespace tallybot::irc
