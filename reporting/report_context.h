#pragma once
// The inputs match reporting reads (settings, game state, the main window's team names and server
// box, the log) and the one state record it keeps between replies, ticks and requests.

#include "query/game_state.h"
#include "reporting/report_settings.h"

#include <cstdint>
#include <string>

namespace tallybot::base {
class clsAppLog;
}

namespace tallybot::reporting {

struct ReportContext {
    ReportSettings& settings;
    query::GameState& game;
    const std::string& txtTeamNameRed;
    const std::string& txtTeamNameBlue;
    const std::string& cmbGamServer; // the server as typed, host:port
    base::clsAppLog* log = nullptr;  // may be null in tools that keep no log

    const profiles::GameProfile& Profile() const { return settings.Profiles.Active(); }
};

struct ReportingState {
    // Team scores at the last capture check.
    std::int32_t PrevScoreRed = 0;
    std::int32_t PrevScoreBlue = 0;
    // True between two matches and until the first match start has been seen.
    bool MatchOver = false;
    bool Timeout = false;
    std::int32_t IntervalTicks = 0;
    // Slot of the player who just captured (0: none); "%fcb%" names him once.
    int CappingPlayer = 0;
    // Team scores of the last line holding "%sdr%"/"%sdb%".
    std::int32_t LastPostedRed = 0;
    std::int32_t LastPostedBlue = 0;
    // The send delay runs from start-up, so early requests are refused as spam.
    bool SendDelayRunning = true;
    std::int32_t SendDelayTicks = 0;
};

} // namespace tallybot::reporting
