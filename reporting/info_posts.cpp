#include "reporting/info_posts.h"

#include "base/error_trap.h"
#include "reporting/templates.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tallybot::reporting {

namespace {

constexpr std::size_t kPlayerLineLimit = 380;
constexpr int kTeamTableLines = 10;

std::string Entry(const query::PlayerStatus& p) {
    return p.Name + " $ec$(S$ic$ " + std::to_string(p.Score) + "$ec$,P$ic$ " + std::to_string(p.Ping) + "$ec$)";
}

// Shell sort by score, highest first, over slots 1..50 with the empty slots taking part: a
// negative score therefore sinks below every empty slot.
void SortByScore(query::PlayerTable& table) {
    constexpr int lo = 1, hi = query::kMaxPlayers;
    for (int gap = (hi - lo + 1) / 2; gap >= 1; gap /= 2) {
        int limit = hi - gap;
        int last = 0;
        do {
            last = 0;
            for (int i = 1; i <= limit; ++i) {
                auto& a = table[static_cast<std::size_t>(i)];
                auto& b = table[static_cast<std::size_t>(i + gap)];
                if (a.Score < b.Score) {
                    std::swap(a, b);
                    last = i;
                }
            }
            limit = last - gap;
        } while (last != 0);
    }
}

void CheckPlayerCount(int numPlayers) {
    if (numPlayers > query::kMaxPlayers) throw vb::SubscriptOutOfRange();
}

} // namespace

template <class Body> void InfoPosts::Guarded(const char* procedure, Body&& body) {
    base::Trap(m_ctx.log, "frmMain", procedure, std::forward<Body>(body));
}

std::string InfoPosts::Expand(std::string_view text, bool resetScores) {
    return ExpandTemplate(m_ctx, m_state, text, false, resetScores);
}

void InfoPosts::Post(std::string_view text) {
    m_channel.SendToChannel(Expand(text));
}

void InfoPosts::PostError(const std::string& text) {
    const auto& s = m_ctx.settings;
    m_channel.SendToChannel(s.ExtTextCol + "Error : " + s.InfoTextCol + text + s.ExtTextCol + "!");
}

// IRC without a game server answers with an error; without IRC there is nobody to answer.
bool InfoPosts::PassGate() {
    const int conn = m_ctx.settings.ConnState;
    if (conn == 1) {
        PostError("Not connected to gameserver");
        return false;
    }
    return conn != 2;
}

void InfoPosts::mnuPostServer() {
    Guarded("mnuPostServer_Click", [&] {
        if (!PassGate()) return;
        Post("$ec$Host:$ic$ %sna% $ec$($ic$ %sip% $ec$)");
        if (Expand("%gve%").size() >= 3)
            Post("$ec$Version:$ic$ %sve%$ec$ ,$ic$ %gve%");
        else
            Post("$ec$Version:$ic$ %sve%$ec$");
        Post("$ec$Gamename:$ic$ %gna% $ec$, Map:$ic$ %map% $ec$, Players:$ic$ %npl%$ec$ /$ic$ %mpl%");
    });
}

void InfoPosts::mnuPostServerShort() {
    Guarded("mnuPostServerShort_Click", [&] {
        if (!PassGate()) return;
        Post("$ec$Hostname:$ic$ %sna% $ec$, Map:$ic$ %map% $ec$, Players:$ic$ %npl%$ec$ /$ic$ %mpl%");
    });
}

void InfoPosts::mnuPostTeams() {
    Guarded("mnuPostTeams_Click", [&] { PostTeams(false); });
}

void InfoPosts::mnuPostTeamsShort() {
    Guarded("mnuPostTeamsShort_Click", [&] { PostTeams(true); });
}

void InfoPosts::PostTeams(bool shortForm) {
    if (!PassGate()) return;
    const auto& profile = m_ctx.Profile();
    if (profile.Advanced != 1 && profile.AutoTeams != 1) {
        PostError("Server does not support advanced info commands");
        return;
    }
    const auto& game = m_ctx.game;
    const int numPlayers = game.Status.NumPlayers;
    if (numPlayers == 0) {
        PostError("No players on the server");
        return;
    }
    CheckPlayerCount(numPlayers);
    bool anyInTeam = false;
    for (int i = 1; i <= numPlayers; ++i) {
        const int team = game.Players[static_cast<std::size_t>(i)].Team;
        anyInTeam = anyInTeam || team == 1 || team == 2;
    }
    if (!anyInTeam) {
        PostError("No players in teams on the server");
        return;
    }

    Post(std::string(kRedColour) + "%tnr% $ec$(P$ic$ %apr%$ec$)$ic$ %tsr% $ec$:$ic$ %tsb% $ec$(P$ic$ %apb%$ec$) " +
         std::string(kBlueColour) + "%tnb%");
    if (shortForm) Post("#fca#$ec$Capped by$ic$ %fcb%#fca#"); // sent even when it expands to nothing
    Post("$ec$Map: $ic$%map% $ec$, Time left:$ic$ %mtl%");
    if (shortForm) return;

    // Line k shows the k-th red and the k-th blue player side by side; an 11th in a team is an
    // error that ends the post after the lines above.
    std::array<std::string, kTeamTableLines + 1> lines{};
    int red = 0, blue = 0;
    for (int i = 1; i <= numPlayers; ++i) {
        const auto& p = game.Players[static_cast<std::size_t>(i)];
        if (p.Team != 1) continue;
        if (++red > kTeamTableLines) throw vb::SubscriptOutOfRange();
        lines[static_cast<std::size_t>(red)] = std::string(kRedColour) + Entry(p);
    }
    for (int i = 1; i <= numPlayers; ++i) {
        const auto& p = game.Players[static_cast<std::size_t>(i)];
        if (p.Team != 2) continue;
        if (++blue > kTeamTableLines) throw vb::SubscriptOutOfRange();
        lines[static_cast<std::size_t>(blue)] += " $ec$-" + std::string(kBlueColour) + " " + Entry(p);
    }
    for (int k = 1; k <= std::max(red, blue); ++k)
        Post(lines[static_cast<std::size_t>(k)]);
}

void InfoPosts::mnuPostPlayers() {
    Guarded("mnuPostPlayers_Click", [&] { PostPlayers(true); });
}

void InfoPosts::mnuPostPlayersShort() {
    Guarded("mnuPostPlayersShort_Click", [&] { PostPlayers(false); });
}

void InfoPosts::PostPlayers(bool withDetails) {
    if (!PassGate()) return;
    if (m_ctx.game.Status.NumPlayers == 0) {
        PostError("No players on the server");
        return;
    }
    m_channel.SendToChannel(FormatPlayerList(withDetails));
}

std::string InfoPosts::FormatPlayerList(bool withDetails) {
    const int numPlayers = m_ctx.game.Status.NumPlayers;
    CheckPlayerCount(numPlayers);
    query::PlayerTable sorted = m_ctx.game.Players;
    SortByScore(sorted);

    std::string line = "$ec$Players: $ic$";
    for (int i = 1; i <= numPlayers; ++i) {
        const auto& p = sorted[static_cast<std::size_t>(i)];
        line += p.Name + " ";
        if (withDetails)
            line += "$ec$(S$ic$ " + std::to_string(p.Score) + "$ec$,P$ic$ " + std::to_string(p.Ping) + "$ec$) ";
        if (line.size() >= kPlayerLineLimit) break; // one line only; the rest are left out
    }
    return Expand(line);
}

void InfoPosts::mnuPostCustomMess() {
    Guarded("mnuPostCustomMess_Click", [&] {
        if (!PassGate()) return;
        Post(m_ctx.Profile().Message);
    });
}

void InfoPosts::mnuPostHelp() {
    Guarded("mnuPostHelp_Click", [&] {
        const auto& s = m_ctx.settings;
        if (s.ConnState == 2) return;
        Post("$ec$Sending delay for user requested data is$ic$ " + std::to_string(s.SendDelay) + " $ec$seconds!");
        Post("$ec$Abbreviations: $ic$S $ec$= $ic$Score $ec$, $ic$P $ec$= $ic$Ping");
        std::string commands = "$ec$Available Commands: $ic$";
        if (s.AllowUserComm == 1) {
            const std::pair<int, const char*> list[] = {
                {s.AllowAbout, " !about"},        {s.AllowInfo, " !info"},        {s.AllowServInfo, " !sinfo"},
                {s.AllowPlayerInfo, " !pinfo"},   {s.AllowTeamInfo, " !tinfo"},   {s.AllowSServerInfo, " !ssinfo"},
                {s.AllowSPlayerInfo, " !spinfo"}, {s.AllowSTeamInfo, " !stinfo"}, {s.AllowCustom, " !cust"},
            };
            for (const auto& [allowed, command] : list)
                if (allowed != 0) commands += command; // listed when nonzero, unlike the command check
        }
        Post(commands);
    });
}

void InfoPosts::mnuPostAbout() {
    Guarded("mnuPostAbout_Click", [&] {
        if (m_ctx.settings.ConnState == 2) return;
        Post("$ec$Welcome to $ic$" + std::string(kProgramTitle) + " " + ProgramVersion() + " $ec$by $ic$Kavik$ec$!");
        Post("$ec$" + std::string(kProgramTitle) + ":$ic$ " + std::string(kProgramDescription));
    });
}

} // namespace tallybot::reporting
