#pragma once
// Match events after each parsed reply (captures, timeouts, match start and end, overtime) and
// the interval post. Posts go straight to the channel through the information posts.

#include "reporting/info_posts.h"
#include "reporting/report_context.h"

#include <functional>

namespace tallybot::reporting {

class MatchEvents {
public:
    // refreshDisplay runs before every capture check of a Quake 3 reply; it may be empty.
    MatchEvents(const ReportContext& ctx, ReportingState& state, InfoPosts& posts,
                std::function<void()> refreshDisplay = {})
        : m_ctx(ctx), m_state(state), m_posts(posts), m_refreshDisplay(std::move(refreshDisplay)) {}

    // justDetected: the reply has just settled the engine, so nothing is posted for it.
    void CalcCappedPlayer(int scorePerCap, bool matchOver, bool justDetected);
    // Reads the time text of a Quake 3 reply (already parsed into the game state).
    void HandleQ3Info(bool justDetected);
    // One tick of the interval post timer.
    void tmrIRCPost_Timer();

private:
    bool CanPostEvents() const;
    void PostCapture();
    void HandleMatchEnd();
    void HandleClock(const std::string& timeText);

    const ReportContext& m_ctx;
    ReportingState& m_state;
    InfoPosts& m_posts;
    std::function<void()> m_refreshDisplay;
};

} // namespace tallybot::reporting
