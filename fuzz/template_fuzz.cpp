// Arbitrary template text, player names and server texts through template expansion, the
// players line and the preview renderer: nothing may crash, and errors are only VbError.

#include "app/app_settings.h"
#include "base/vb_convert.h"
#include "query/game_state.h"
#include "reporting/info_posts.h"
#include "reporting/irc_preview.h"
#include "reporting/templates.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using namespace tallybot;

struct NullChannel : reporting::ChannelSink {
    void SendToChannel(const std::string&) override {}
    void NotifyUser(const std::string&, const std::string&) override {}
    std::string Nick() const override { return "Bot1"; }
};

// Takes the text up to the next 0x00 byte (or the rest) from input.
std::string Take(std::string_view& input) {
    const std::size_t end = input.find('\0');
    std::string part(input.substr(0, end));
    input = end == std::string_view::npos ? std::string_view{} : input.substr(end + 1);
    return part;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::uint8_t control = size > 0 ? data[0] : 0;
    if (!input.empty()) input.remove_prefix(1);

    app::AppSettings settings;
    settings.ConnState = 3;
    settings.Profiles.CurrentProfile = 1;
    settings.Profiles.Entries[1].Scoring = (control & 1) ? 2 : 0;
    query::GameState game;
    std::string red = Take(input), blue = Take(input), server = Take(input);
    game.Status.HostName = Take(input);
    game.Status.MapName = Take(input);
    game.TeamScoreRed = static_cast<std::int8_t>(control);
    game.TeamScoreBlue = control >> 4;
    const std::string text = Take(input);
    int slot = 0;
    while (!input.empty() && slot < query::kMaxPlayers) {
        auto& p = game.Players[static_cast<std::size_t>(++slot)];
        p.Name = Take(input);
        p.Score = static_cast<std::int16_t>(p.Name.size() * 7 - 40);
        p.Ping = static_cast<std::int32_t>(p.Name.size() * 13);
        p.Team = static_cast<int>(p.Name.size() % 3);
    }
    game.Status.NumPlayers = slot;

    reporting::ReportContext ctx{settings, game, red, blue, server, nullptr};
    reporting::ReportingState state;
    state.CappingPlayer = control % 4 == 3 ? slot : 1;
    NullChannel channel;
    reporting::InfoPosts posts(ctx, state, channel);
    try {
        const std::string live = reporting::ExpandTemplate(ctx, state, text, false, (control & 2) != 0);
        reporting::RenderIrcPreview(live);
        reporting::RenderIrcPreview(reporting::ExpandTemplate(ctx, state, text, true, false));
        posts.FormatPlayerList((control & 4) != 0);
    } catch (const vb::VbError&) {
    }
    posts.mnuPostTeams();
    return 0;
}
