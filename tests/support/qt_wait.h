#pragma once
// Event-loop waiting for tests that drive real Qt sockets, processes and timers.
//
//   WaitUntil([&] { return core.ConnectStatus() == 3; }, std::chrono::seconds(5))
//
// runs the calling thread's Qt event loop until the predicate holds or the deadline passes and returns the
// predicate's last value, so a test asserts on the result instead of sleeping. The loop wakes for every
// event and at least every few milliseconds, so predicates over state outside Qt (files, child processes)
// are seen promptly too. Needs a QCoreApplication (the support library's test main creates one).

#include <chrono>
#include <functional>

namespace tallybot::testsupport {

// Deadline used by the helpers when a test gives none; generous, since sanitizer builds run slowly.
inline constexpr std::chrono::milliseconds kDefaultDeadline = std::chrono::seconds(10);

bool WaitUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline = kDefaultDeadline);

// Runs the event loop for everything already queued (posted events, ready sockets) without waiting.
void ProcessPendingEvents();

} // namespace tallybot::testsupport
