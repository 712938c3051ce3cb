// The main window's side of a game reply: parsing, match reporting, the profile choice.
#include "app/logic/main_logic.h"
#include "profiles/profile_selection.h"
#include "query/parsers.h"
#include "query/team_scores.h"

#include <cstdio>

namespace tallybot::app {

void MainLogic::ParseReply(int engineId, std::string_view reply) {
    const profiles::GameProfile& profile = m_settings.Profiles.Active();
    m_game.GameColoursToIrc = m_settings.Extras.GameColoursToIrc == 1;
    query::ParseEngineReply(engineId, reply, m_game, profile);
    // The parsers' team-score reset also resets the scores match reporting remembers, but only
    // for empty teams or a new match: several engines reset on every reply, and a reply with the
    // same sums must not count as a rise, nor may a standing correction be reported.
    if (m_game.TeamScoreResets == m_teamScoreResets) return;
    m_teamScoreResets = m_game.TeamScoreResets;
    const query::TeamSums sums = query::PlayerTeamSums(m_game, profile.Scoring);
    const bool nothingScored = sums.Red == 0 && sums.Blue == 0;
    const bool noCorrection = m_game.TeamScoreRed == 0 && m_game.TeamScoreBlue == 0;
    if (nothingScored && noCorrection) {
        m_reportState.PrevScoreRed = 0;
        m_reportState.PrevScoreBlue = 0;
        m_reportState.LastPostedRed = 0;
        m_reportState.LastPostedBlue = 0;
    }
}

void MainLogic::ResetTeamScores() {
    query::CalcTeamScores(m_game, -1, 0, m_settings.Profiles.Active());
    query::ResetTeamScores(m_game);
    m_teamScoreResets = m_game.TeamScoreResets;
    m_reportState.PrevScoreRed = 0;
    m_reportState.PrevScoreBlue = 0;
    m_reportState.LastPostedRed = 0;
    m_reportState.LastPostedBlue = 0;
    // The next run detects its engine afresh.
    m_awaitingDetection = true;
}

void MainLogic::HandleQ3Info(std::string_view /*reply: already parsed into the game state*/) {
    m_reporting.Events.HandleQ3Info(m_awaitingDetection);
}

void MainLogic::CalcCappedPlayer(int scorePerCap, int matchOver) {
    m_reporting.Events.CalcCappedPlayer(scorePerCap, matchOver != 0, m_awaitingDetection);
}

void MainLogic::SelectProfile() {
    m_view.Query.cmdProfilesCaption =
        profiles::SelectProfile(m_game.EngineId, m_game.Status.GameName, m_game.Status.GameType, m_settings.Profiles);
    // Every reply while the engine is unknown or pending settles it anew.
    m_awaitingDetection = m_game.EngineId == query::kEngineUnknown || m_game.EngineId == query::kEnginePending;
    RefreshProfileMenu();
}

void MainLogic::RefreshControls() {
    m_awaitingDetection = true; // a query run starts with an unknown engine
    UpdatePostControls();
}

void MainLogic::ShowMessage(const std::string& text) {
    if (m_shell) m_shell->ShowMessage(text, kAppTitle);
}

void MainLogic::Log(const std::string& module, const std::string& procedure, long errorNumber,
                    const std::string& message, bool showMessage) {
    if (m_log) m_log->Log(module, procedure, errorNumber, message, showMessage);
}

void MainLogic::Notice(const std::string& procedure, const std::string& text) {
    Log("frmMain", procedure, 0, text, false);
    // Standard error in both modes: the window shows the state, a terminal or a service log the why.
    std::fprintf(stderr, "Tallybot: %s\n", text.c_str());
    std::fflush(stderr);
}

} // namespace tallybot::app
