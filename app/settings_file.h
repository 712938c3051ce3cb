#pragma once
// The settings file "Tallybot.ini" in the program folder: read once at start-up, written once, in
// full, at shutdown.

#include <string>

namespace tallybot::app {

struct AppSettings;

constexpr const char* kSettingsFileName = "Tallybot.ini";

// Fills every stored field from AppPath + "Tallybot.ini"; missing keys take their defaults.
void LoadSettings(AppSettings& settings);
// Writes every stored field; a failed write is ignored. Escapes the on-join texts in place.
void SaveSettings(AppSettings& settings);

// Control characters 2, 3, 15, 31 <-> the marks "§§1§§" .. "§§4§§" (section sign as byte 0xA7).
void EscapeControlCodes(std::string& text);
void UnescapeControlCodes(std::string& text);

} // namespace tallybot::app
