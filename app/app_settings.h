#pragma once
// The one settings record: every stored setting plus the shared run-time state (program folder,
// connection state, profile table, log). Filled by LoadSettings at start-up, written by
// SaveSettings at shutdown; everything in between changes it in memory only. Each subsystem sees
// only its own part (query::QuerySettings, reporting::ReportSettings, profiles::ProfileSettings).

#include "reporting/report_settings.h"

#include <array>
#include <string>

namespace tallybot::app {

constexpr int kHistorySize = 4; // positions 1..4; slot 0 exists but is never read or written

struct AppSettings : reporting::ReportSettings {
    // [General]
    int MinToTray = 1;
    int KeepOnTop = 0;
    int RemWinPos = 0;
    int WinTop = 500;
    int WinLeft = 500;
    int WinState = 0;
    int ModWinTop = 100;
    int ModWinLeft = 100;

    // [IRC] (the two colour strings are in ReportSettings)
    std::array<std::string, kHistorySize + 1> IrcServer{};
    std::array<int, kHistorySize + 1> IrcPort{};
    std::array<std::string, kHistorySize + 1> IrcChannel{};
    std::array<std::string, kHistorySize + 1> IrcNick{};
    std::string IdentEmail = "tallybot@example.org";
    std::string RealName = "tallybot";
    int IrcTimeStamp = 0;
    int ShowPing = 1;
    int PerformEnable = 0;
    std::string PerformCmd;

    // [Game] (the rest is in QuerySettings)
    std::array<std::string, kHistorySize + 1> GameHost{};
};

} // namespace tallybot::app
