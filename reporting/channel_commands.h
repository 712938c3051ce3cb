#pragma once
// Commands typed by channel users ("!sinfo" ...), the send delay that refuses requests while it
// runs, the welcome notice for users who join and the on-join message.

#include "reporting/info_posts.h"
#include "reporting/report_context.h"
#include "reporting/sinks.h"

#include <string>
#include <vector>

namespace tallybot::reporting {

// Words split at every single blank; two blanks in a row give an empty word.
std::vector<std::string> SplitWords(const std::string& text);

class ChannelCommands {
public:
    ChannelCommands(const ReportContext& ctx, ReportingState& state, InfoPosts& posts, ChannelSink& channel,
                    PaneSink& pane)
        : m_ctx(ctx), m_state(state), m_posts(posts), m_channel(channel), m_pane(pane) {}

    // One request from the channel; user (ident@host) is not used.
    void ircMain_UserCommand(const std::string& commandLine, const std::string& nick, const std::string& user);
    // One second of the send delay; the adapter's timer runs while SendDelayRunning() is true.
    void tmrIRCSendDelay_Timer();
    bool SendDelayRunning() const { return m_state.SendDelayRunning; }

    void ircMain_UserJoin(const std::string& nick);
    // The program's own channel join has completed.
    void PostOnJoinMessage();

private:
    void LogRequest(const std::string& nick, const std::string& command, const char* outcome);

    const ReportContext& m_ctx;
    ReportingState& m_state;
    InfoPosts& m_posts;
    ChannelSink& m_channel;
    PaneSink& m_pane;
};

} // namespace tallybot::reporting
