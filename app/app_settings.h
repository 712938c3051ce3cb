#pragma once
// The one settings record: every stored setting plus the shared run-time state (program folder,
// connection state, profile table, log). Filled by LoadSettings at start-up, written by
// SaveSettings at shutdown; everything in between changes it in memory only.

#include "app/extras_settings.h"
#include "profiles/game_profile.h"

#include <array>
#include <string>

namespace tallybot::app {

class clsAppLog;

constexpr int kHistorySize = 4; // positions 1..4; slot 0 exists but is never read or written

struct AppSettings {
    // [General]
    int MinToTray = 1;
    int KeepOnTop = 0;
    int RemWinPos = 0;
    int WinTop = 500;
    int WinLeft = 500;
    int WinState = 0;
    int ModWinTop = 100;
    int ModWinLeft = 100;

    // [IRC]
    std::array<std::string, kHistorySize + 1> IrcServer{};
    std::array<int, kHistorySize + 1> IrcPort{};
    std::array<std::string, kHistorySize + 1> IrcChannel{};
    std::array<std::string, kHistorySize + 1> IrcNick{};
    std::string ExtTextCol = "\x03"
                             "10"; // ready-to-send colour prefix
    std::string InfoTextCol = "\x03"
                              "2";
    std::string IdentEmail = "tallybot@example.org";
    std::string RealName = "tallybot";
    int IrcTimeStamp = 0;
    int ShowPing = 1;
    int PerformEnable = 0;
    std::string PerformCmd;

    // [OnJoin]
    int OnJoinEnabled = 0;
    std::string OnJoinMessage;
    int NoticeEnabled = 0;
    std::string NoticeMsg;

    // [Game]
    std::array<std::string, kHistorySize + 1> GameHost{};
    int QueryTime = 1000;
    int DoLog = 0;
    std::string LogFolder;
    int GameLogTimeStamp = 0;
    int LogInclDate = 1;
    int DefaultPort = 27960;
    int Reconnect = 1;

    // [Autopost]
    int SendDelay = 10;
    int AllowAbout = 1;
    int AllowInfo = 1;
    int AllowUserComm = 1;
    int AllowPlayerInfo = 1;
    int AllowServInfo = 1;
    int AllowTeamInfo = 1;
    int AllowCustom = 1;
    int AllowSPlayerInfo = 1;
    int AllowSServerInfo = 1;
    int AllowSTeamInfo = 1;
    int CommandParameter = 0;

    // [Extras]
    ExtrasSettings Extras;

    // Run-time state, never written to the file.
    std::string AppPath;           // program folder, ending in the platform separator
    int ConnState = 0;             // bit 1: IRC up, bit 2: query running
    profiles::ProfileTable Profiles;
    clsAppLog* Log = nullptr;      // owned by the program's start-up
};

} // namespace tallybot::app
