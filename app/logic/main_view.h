#pragma once
// What the main window shows, as plain values: the window mirrors these in widgets, the headless
// runner ignores most of them, and tests assert on them.

#include "profiles/game_profile.h"
#include "query/query_cycle.h"

#include <array>
#include <string>
#include <vector>

namespace tallybot::app {

// One history combo box: the text in its edit field, its remembered entries, most recent first.
struct HistoryCombo {
    std::string Text;
    std::vector<std::string> List;
    bool Enabled = true;

    bool operator==(const HistoryCombo&) const = default;
};

struct MenuEntry {
    std::string Caption;
    bool Visible = false;

    bool operator==(const MenuEntry&) const = default;
};

// One row of lvwPlayers.
struct PlayerRow {
    std::string Name;
    std::string Score;
    std::string Ping;
    std::string Team; // "Red", "Blue" or "N/A"

    bool operator==(const PlayerRow&) const = default;
};

struct MainView {
    // The query side's controls (server box text and state, query button, status label, profile
    // button, tmrGamQuery, tmrIRCPost, cmdInfoToIRC, cmdAssignPlayers, cmdCorrectScore).
    query::QueryView Query;
    std::vector<std::string> cmbGamServerList;
    bool cmdGamQueryEnabled = false;

    HistoryCombo cmbIRCServer;
    HistoryCombo cmbIRCPort;
    HistoryCombo cmbIRCChannel;
    HistoryCombo cmbIRCNick;
    std::string cmdIRCConnectionCaption = "&Connect";
    bool cmdIRCConnectionEnabled = false;

    bool mnuStatToIRCEnabled = false;                                  // the post menu
    std::array<MenuEntry, profiles::kMaxProfiles + 1> mnuProfileSel{}; // entries 1..20

    std::string txtTeamNameRed;
    std::string txtTeamNameBlue;

    // RefreshDisplay
    std::string lblHostname = "N/A";
    std::string lblGameName = "N/A";
    std::string lblMapname = "N/A";
    std::string lblTimelimit = "N/A";
    std::string lblPlayerInfo = "0 / N/A";
    std::vector<PlayerRow> lvwPlayers;

    // Window frame: caption, topmost flag, placement the window reports back for saving.
    std::string Caption;
    bool KeepOnTop = false;
    int WindowState = 0; // 0 normal, 1 minimised, 2 maximised
    int WindowTop = 0;   // pixels; the settings file keeps twips
    int WindowLeft = 0;
    int WindowWidth = 0; // of the normal (not maximised) window
    int WindowHeight = 0;
    double WindowDpiX = 96; // the logical dpi of the window's screen, for the conversion to twips
    double WindowDpiY = 96;
};

} // namespace tallybot::app
