#pragma once
// What the query cycle reads of the settings record: section [Game] less the history.

#include "profiles/profile_settings.h"

#include <string>

namespace tallybot::query {

struct QuerySettings : profiles::ProfileSettings {
    int QueryTime = 1000;
    int DoLog = 0;
    std::string LogFolder;
    int GameLogTimeStamp = 0;
    int LogInclDate = 1;
    int DefaultPort = 27960;
    int Reconnect = 1;
};

} // namespace tallybot::query
