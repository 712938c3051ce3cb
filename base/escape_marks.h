#pragma once
// INI files cannot hold the IRC control characters, so they are stored as marks: 2, 3, 15 and 31
// become "§§1§§" .. "§§4§§" (section sign as the Windows-1252 byte 0xA7).

#include <string>

namespace tallybot::base {

void EscapeControlCodes(std::string& text);
void UnescapeControlCodes(std::string& text);

} // namespace tallybot::base
