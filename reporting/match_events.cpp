#include "reporting/match_events.h"

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "reporting/templates.h"

#include <algorithm>
#include <cctype>

namespace tallybot::reporting {

namespace {

// A ScorePerCap of 0 becomes 255, which practically never matches a single capture.
constexpr int kUnsetScorePerCap = 255;

std::string UpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

bool Has(const std::string& text, const char* word) {
    return text.find(word) != std::string::npos;
}

} // namespace

bool MatchEvents::CanPostEvents() const {
    return m_ctx.settings.ConnState == 3 && m_ctx.Profile().StatusPosting == 1;
}

void MatchEvents::CalcCappedPlayer(int scorePerCap, bool matchOver, bool justDetected) {
    base::Trap(m_ctx.log, "frmMain", "CalcCappedPlayer", [&] {
        if (matchOver) return;
        if (scorePerCap == 0) {
            scorePerCap = kUnsetScorePerCap;
            auto& table = m_ctx.settings.Profiles;
            // Only the profile held in memory; the all-zero "no profile" entry stays all zero.
            if (table.CurrentProfile >= 1 && table.CurrentProfile <= profiles::kMaxProfiles)
                table.Entries[static_cast<std::size_t>(table.CurrentProfile)].ScorePerCap = kUnsetScorePerCap;
        }
        m_state.CappingPlayer = 0;

        query::GameState& game = m_ctx.game;
        const int numPlayers = game.Status.NumPlayers;
        if (numPlayers > query::kMaxPlayers) throw vb::SubscriptOutOfRange();
        const bool redRose = game.TeamScoreRed > m_state.PrevScoreRed;
        const bool blueRose = game.TeamScoreBlue > m_state.PrevScoreBlue;
        if (redRose || blueRose) {
            for (int i = 1; i <= numPlayers; ++i) {
                const auto& p = game.Players[static_cast<std::size_t>(i)];
                const bool scoringTeam = (p.Team == 1 && redRose) || (p.Team == 2 && blueRose);
                if (scoringTeam && p.Score >= static_cast<long long>(p.Flag) + scorePerCap) {
                    m_state.CappingPlayer = i;
                    break;
                }
            }
            const auto& profile = m_ctx.Profile();
            if (!justDetected && m_ctx.settings.ConnState == 3 && profile.PostScoreChange == 1) PostCapture();
        }
        // Also after a fall, so that a corrected score is the base of the next capture.
        m_state.PrevScoreRed = game.TeamScoreRed;
        m_state.PrevScoreBlue = game.TeamScoreBlue;
        for (int i = 1; i <= numPlayers; ++i) {
            auto& p = game.Players[static_cast<std::size_t>(i)];
            p.Flag = p.Score;
        }
    });
}

void MatchEvents::PostCapture() {
    if (m_ctx.Profile().UseCustom == 1)
        m_posts.mnuPostCustomMess();
    else
        m_posts.mnuPostTeamsShort();
}

void MatchEvents::HandleQ3Info(bool justDetected) {
    base::Trap(m_ctx.log, "frmMain", "HandleQ3Info", [&] {
        const std::string timeText = m_ctx.game.Status.ScoreTime;
        const std::string upper = UpperCase(timeText);
        if (m_refreshDisplay) m_refreshDisplay();
        CalcCappedPlayer(m_ctx.Profile().ScorePerCap, m_state.MatchOver, justDetected);

        const bool statusPosting = m_ctx.Profile().StatusPosting == 1;
        if (Has(upper, "TIMEOUT")) {
            if (!m_state.Timeout) {
                std::string line = "$ec$A $ic$Timeout $ec$has been called";
                if (Has(upper, "RED"))
                    line += " by$ic$ %tnr%";
                else if (Has(upper, "BLUE"))
                    line += " by$ic$ %tnb%";
                line += " $ec$(Map:$ic$ %map%$ec$)!";
                if (statusPosting) m_posts.Post(line);
                m_state.Timeout = true;
            }
        } else if (m_state.Timeout) {
            if (statusPosting) m_posts.Post("$ec$The match has been $ic$resumed$ec$!");
            m_state.Timeout = false;
        }

        // A match already running when the program starts is not reported as ending.
        if (justDetected) m_state.MatchOver = true;

        if (Has(upper, "INTERMISSION") || Has(upper, "TIMELIMIT"))
            HandleMatchEnd();
        else if (Has(timeText, ":") && m_state.MatchOver)
            HandleClock(timeText);
    });
}

void MatchEvents::HandleMatchEnd() {
    if (!m_state.MatchOver) {
        m_state.MatchOver = true;
        if (CanPostEvents()) {
            if (m_ctx.Profile().UseCustom == 1) {
                m_posts.Post(m_ctx.Profile().MessageEnd);
            } else {
                m_posts.Post("$ec$The match $ec$has $ic$ended$ec$!");
                m_posts.mnuPostTeams();
            }
        }
    }
    query::ClearServerStatus(m_ctx.game.Status);
    m_posts.Expand("", true);
    m_state.PrevScoreRed = 0;
    m_state.PrevScoreBlue = 0;
    m_state.CappingPlayer = 0;
}

void MatchEvents::HandleClock(const std::string& timeText) {
    if (timeText.starts_with("OT")) {
        // Overtime is announced whatever the connection state and StatusPosting say.
        m_posts.Post("$ic$Sudden death overtime $ec$(teams $ic$tied at %tsr%$ec$)!");
        m_state.MatchOver = false;
        return;
    }
    const std::int32_t minutes = vb::CLng(timeText.substr(0, timeText.find(':')));
    const int timeLimit = m_ctx.game.Status.TimeLimit;
    if (minutes < timeLimit) {
        m_state.MatchOver = false; // joined a match in progress: nothing to announce
    } else if (minutes == timeLimit) {
        m_state.MatchOver = false;
        if (CanPostEvents()) {
            if (m_ctx.Profile().UseCustom == 1)
                m_posts.Post(m_ctx.Profile().MessageStart);
            else
                m_posts.Post("$ec$The $ic$match $ec$has $ic$begun $ec$(Map:$ic$ %map%$ec$)!");
        }
    }
}

void MatchEvents::tmrIRCPost_Timer() {
    base::Trap(m_ctx.log, "frmMain", "tmrIRCPost_Timer", [&] {
        ++m_state.IntervalTicks;
        if (m_state.IntervalTicks < m_ctx.Profile().IntervalTime) return;
        m_state.IntervalTicks = 0;
        switch (m_ctx.Profile().IntervalInfo) {
        case 0:
            m_posts.mnuPostServer();
            break;
        case 1:
            m_posts.mnuPostServerShort();
            break;
        case 2:
            m_posts.mnuPostPlayers();
            break;
        case 3:
            m_posts.mnuPostPlayersShort();
            break;
        case 4:
            m_posts.mnuPostTeams();
            break;
        case 5:
            m_posts.mnuPostTeamsShort();
            break;
        case 6:
            m_posts.mnuPostCustomMess();
            break;
        default:
            break; // nothing posted, the count still starts again
        }
    });
}

} // namespace tallybot::reporting
