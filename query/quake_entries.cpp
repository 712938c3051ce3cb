// Engine entries of the Quake 3 family: each ignores its engine's disconnect packet, parses,
// then applies the profile rules. Q3 and MoH pass reset 0 to CalcTeamScores, the others -1.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/parsers.h"
#include "query/quake_family.h"
#include "query/quake_text.h"

namespace tallybot::query {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kDisconnect = "\xFF\xFF\xFF\xFF"
                                         "disconnect"sv;
constexpr std::string_view kMoHDisconnect = "\xFF\xFF\xFF\xFF\x01"
                                            "disconnect"sv;

std::string_view Trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

bool IsThreewave(std::string_view gameName) {
    gameName = Trim(gameName);
    return gameName.size() == 9 && quake::KeyIs(gameName, "threewave");
}

void ApplyProfileRules(GameState& state, const profiles::GameProfile& profile, int reset) {
    if (profile.Advanced == 0) state.Status.ScoreTime = "N/A";
    if (profile.AutoTeams == 0) CalcTeamScores(state, reset, 0, profile);
}

} // namespace

namespace quake {

void ApplyThreewaveTime(ServerStatus& status) {
    std::string_view time = status.ScoreTime;
    if (!IsThreewave(status.GameName) || time.empty() || time[0] < '0' || time[0] > '9') return;
    base::ResumeNext([&] {
        std::string_view minutesText = Extract(time, ':');
        std::string seconds = vb::CStr(60 - ToInt16(time));
        if (seconds.size() < 2) seconds = std::string(1, '0') + seconds;
        long minutes = static_cast<long>(status.TimeLimit) - ToInt16(minutesText) - 1;
        // Only a whole minute with nothing left is corrected; other whole minutes stay one short.
        if (seconds == "60") {
            seconds.assign(2, '0');
            if (minutes == 0) minutes = 1;
        }
        status.ScoreTime = vb::CStr(minutes) + ":" + seconds;
    });
}

} // namespace quake

void ParseQ3Reply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply == kDisconnect) return;
    quake::ParseQ3FamilyLines(reply, state, profile, false);
    quake::ApplyThreewaveTime(state.Status);
    ApplyProfileRules(state, profile, 0);
}

void ParseQ3FamilyReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply == kDisconnect) return;
    quake::ParseQ3FamilyLines(reply, state, profile, false);
    ApplyProfileRules(state, profile, -1);
}

void ParseMoHReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply == kMoHDisconnect) return;
    quake::ParseQ3FamilyLines(reply, state, profile, true);
    ApplyProfileRules(state, profile, 0);
}

} // namespace tallybot::query
