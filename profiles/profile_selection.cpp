#include "profiles/profile_selection.h"

namespace tallybot::profiles {

namespace {

bool Matches(const GameProfile& profile, int engineId, const std::string& gameName, const std::string& gameType) {
    return profile.Engine == engineId && (profile.GameName.empty() || profile.GameName == gameName) &&
           (profile.GameType.empty() || profile.GameType == gameType);
}

} // namespace

std::string SelectProfile(int engineId, const std::string& gameName, const std::string& gameType, ProfileTable& table) {
    // The whole table is scanned, not just the loaded count, and the current profile is not
    // reset first: a profile forced from the menu survives a server that matches nothing.
    for (int i = 1; i <= kMaxProfiles; ++i) {
        if (Matches(table.Entries[i], engineId, gameName, gameType)) {
            table.CurrentProfile = i;
            break;
        }
    }
    if (table.CurrentProfile == 0) table.CurrentProfile = table.DefaultProfile;
    return ProfileCaption(table);
}

std::string ProfileCaption(const ProfileTable& table) {
    if (table.CurrentProfile < 1 || table.CurrentProfile > kMaxProfiles) return kNoProfileCaption;
    return "Profile: " + table.Entries[table.CurrentProfile].ProfileName;
}

} // namespace tallybot::profiles
