#pragma once
// Event-loop waiting for tests that drive real Qt sockets, processes and timers: a test asserts on
// WaitUntil([&] { return core.ConnectStatus() == 3; }) instead of sleeping. Needs a
// QCoreApplication (the support library's test main creates one).

#include <chrono>
#include <functional>

namespace tallybot::testsupport {

// Deadline used by the helpers when a test gives none; generous, since sanitizer builds run slowly.
inline constexpr std::chrono::milliseconds kDefaultDeadline = std::chrono::seconds(10);

// Runs the Qt event loop until the predicate holds or the deadline passes; returns the predicate's
// last value. The loop wakes at least every few milliseconds, so state outside Qt is seen too.
bool WaitUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline = kDefaultDeadline);

// Runs the event loop for everything already queued (posted events, ready sockets) without waiting.
void ProcessPendingEvents();

} // namespace tallybot::testsupport
