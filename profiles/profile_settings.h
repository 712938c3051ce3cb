#pragma once
// What the profile side reads of the settings record: the program folder (where "Profiles/" is)
// and the profile table.

#include "base/common_settings.h"
#include "profiles/game_profile.h"

namespace tallybot::profiles {

struct ProfileSettings : base::CommonSettings {
    ProfileTable Profiles;
};

} // namespace tallybot::profiles
