#pragma once
// Picking the game profile for the server being queried. Pure: the caller passes what the query
// side knows and shows the returned caption on the profile button.

#include "profiles/game_profile.h"

#include <string>

namespace tallybot::profiles {

// Caption of the profile button while no profile has been chosen.
inline constexpr const char* kNoProfileCaption = "Profile: None";

// Sets table.CurrentProfile to the first of entries 1..20 whose engine equals engineId and whose
// name and type are empty or equal (case-sensitive) to the server's; when nothing matches, the
// already current profile stays, and only when none is current the default profile is taken.
// Returns the caption "Profile: <name>", or "Profile: None" when no profile is current.
std::string SelectProfile(int engineId, const std::string& gameName, const std::string& gameType, ProfileTable& table);

// The caption for whatever profile is current now (after the menu forced one, or a reset to 0).
std::string ProfileCaption(const ProfileTable& table);

} // namespace tallybot::profiles
