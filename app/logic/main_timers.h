#pragma once
// The three timers of the main window as the logic sees them: it says which should run and at
// what interval; the Qt runtime (or a test fake) carries that out. Ticks come back as calls to
// MainLogic::tmrGamQuery_Timer, tmrIRCPost_Timer and tmrIRCSendDelay_Timer.

namespace tallybot::app {

enum class MainTimer { GamQuery, IRCPost, IRCSendDelay };

class MainTimers {
public:
    virtual ~MainTimers() = default;
    // Called only when the enabled state or the interval of a timer changed.
    virtual void SetTimer(MainTimer timer, bool enabled, int intervalMs) = 0;
};

} // namespace tallybot::app
