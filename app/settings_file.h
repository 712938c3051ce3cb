#pragma once
// The settings file "Tallybot.ini" in the program folder: read once at start-up, written once, in
// full, at shutdown.

#include <string>

namespace tallybot::base {
struct ExtrasSettings;
}

namespace tallybot::app {

struct AppSettings;

constexpr const char* kSettingsFileName = "Tallybot.ini";

// The [Extras] values a new home starts with: those that today's servers need. A settings file
// without a key keeps the classic behaviour for it.
void ApplyPresentDayExtras(base::ExtrasSettings& extras);

// Fills every stored field from AppPath + "Tallybot.ini"; missing keys take their defaults; a
// missing file (a new home) also takes the present-day [Extras] values.
void LoadSettings(AppSettings& settings);
// Writes every stored field; a failed write is ignored. Escapes the on-join texts in place.
void SaveSettings(AppSettings& settings);

} // namespace tallybot::app
