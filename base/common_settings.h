#pragma once
// The part of the settings record that every subsystem shares: the program folder, the connection
// state both sides update, the log, and the [Extras] switches. Each subsystem's own part of the
// settings builds on it, so the application's one record holds a single copy.

#include "base/extras_settings.h"

#include <string>

namespace tallybot::base {

class clsAppLog;

struct CommonSettings {
    std::string AppPath;      // program folder, ending in the platform separator
    int ConnState = 0;        // bit 1: IRC up, bit 2: query running
    clsAppLog* Log = nullptr; // owned by the program's start-up
    ExtrasSettings Extras;
};

} // namespace tallybot::base
