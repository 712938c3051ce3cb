#pragma once
// Match reporting in one piece for the main logic: the information posts, the match events and
// the channel commands, all over the same context, state and sinks.

#include "reporting/channel_commands.h"
#include "reporting/info_posts.h"
#include "reporting/match_events.h"
#include "reporting/templates.h"

#include <functional>

namespace tallybot::reporting {

struct Reporting {
    Reporting(const ReportContext& ctx, ReportingState& state, ChannelSink& channel, PaneSink& pane,
              std::function<void()> refreshDisplay = {})
        : Posts(ctx, state, channel), Events(ctx, state, Posts, std::move(refreshDisplay)),
          Commands(ctx, state, Posts, channel, pane) {}

    Reporting(const Reporting&) = delete;
    Reporting& operator=(const Reporting&) = delete;

    InfoPosts Posts;
    MatchEvents Events;
    ChannelCommands Commands;
};

} // namespace tallybot::reporting
