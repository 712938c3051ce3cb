// RefreshDisplay: the server labels and the player list, read from the game state only.
#include "app/logic/main_logic.h"
#include "query/name_colours.h"

namespace tallybot::app {

namespace {

constexpr const char* kNotReported = "N/A";

std::string OrNotReported(const std::string& text) {
    return text.empty() ? kNotReported : text;
}

std::string TeamName(int team) {
    switch (team) {
    case 1:
        return "Red";
    case 2:
        return "Blue";
    default:
        return kNotReported;
    }
}

} // namespace

std::string TrayTooltip(int connState) {
    std::string tip = kAppTitle;
    switch (connState) {
    case 3:
        return tip + " - connected to IRC and game server";
    case 1:
        return tip + " - connected to IRC server";
    case 2:
        return tip + " - connected to game server";
    case 0:
        return tip + " - ready";
    default:
        return tip;
    }
}

void MainLogic::RefreshDisplay() {
    const query::ServerStatus& s = m_game.Status;
    // Names may carry IRC colours for the channel ([Extras] GameColoursToIrc); the window shows text.
    m_view.lblHostname = OrNotReported(query::WithoutIrcColours(s.HostName));
    m_view.lblGameName = OrNotReported(s.GameName);
    m_view.lblMapname = OrNotReported(s.MapName);
    m_view.lblTimelimit = s.TimeLimit == 0 ? kNotReported : std::to_string(s.TimeLimit);
    m_view.lblPlayerInfo =
        std::to_string(s.NumPlayers) + " / " + (s.MaxClients == 0 ? kNotReported : std::to_string(s.MaxClients));

    m_view.lvwPlayers.clear();
    const int count = s.NumPlayers < 0 ? 0 : (s.NumPlayers > query::kMaxPlayers ? query::kMaxPlayers : s.NumPlayers);
    for (int i = 1; i <= count; ++i) {
        const query::PlayerStatus& p = m_game.Players[static_cast<std::size_t>(i)];
        m_view.lvwPlayers.push_back(
            {query::WithoutIrcColours(p.Name), std::to_string(p.Score), std::to_string(p.Ping), TeamName(p.Team)});
    }
}

} // namespace tallybot::app
