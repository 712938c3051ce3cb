#pragma once
// The fixed reports about the game server (server, teams, players, each full and short), the
// profile's custom message, help and about. The menus, the channel commands, the interval post
// and the match events all post through these procedures.

#include "reporting/report_context.h"
#include "reporting/sinks.h"

#include <string>
#include <string_view>

namespace tallybot::reporting {

// Separate literals: "\x03" "04" must not be read as the escape "\x0304".
inline constexpr std::string_view kRedColour = "\x03"
                                               "04";
inline constexpr std::string_view kBlueColour = "\x03"
                                                "12";
inline constexpr std::string_view kProgramTitle = "Tallybot";
#ifndef TALLYBOT_DESCRIPTION
#define TALLYBOT_DESCRIPTION "Game server to IRC match reporter"
#endif
// The about post's second line: what the program is.
inline constexpr std::string_view kProgramDescription = TALLYBOT_DESCRIPTION;

class InfoPosts {
public:
    InfoPosts(const ReportContext& ctx, ReportingState& state, ChannelSink& channel)
        : m_ctx(ctx), m_state(state), m_channel(channel) {}

    void mnuPostServer();
    void mnuPostServerShort();
    void mnuPostTeams();
    void mnuPostTeamsShort();
    void mnuPostPlayers();
    void mnuPostPlayersShort();
    void mnuPostCustomMess();
    void mnuPostHelp();
    void mnuPostAbout();

    // "Error : <text>!" in the two colours, straight to the channel.
    void PostError(const std::string& text);
    // The single players line, sorted by score, cut after the player who reaches 380 characters.
    std::string FormatPlayerList(bool withDetails);

    // Expands one live template and sends it.
    void Post(std::string_view text);
    std::string Expand(std::string_view text, bool resetScores = false);

private:
    bool PassGate();
    void PostTeams(bool shortForm);
    void PostPlayers(bool withDetails);
    template <class Body> void Guarded(const char* procedure, Body&& body);

    const ReportContext& m_ctx;
    ReportingState& m_state;
    ChannelSink& m_channel;
};

} // namespace tallybot::reporting
