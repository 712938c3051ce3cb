#pragma once
// Names with their game colours kept as IRC colours ([Extras] GameColoursToIrc), the alternative
// to ClearName, which removes them.

#include <string>
#include <string_view>

namespace tallybot::query {

// Each caret colour code ("^1", "^Xff8000") becomes code 3 and the nearest IRC colour as two
// digits, so a name that goes on with a digit keeps it; a name that got a colour ends with a
// reset (code 15), so the colour does not run into the text after it. Quotes, "^N" and "^B" go,
// as in ClearName.
std::string GameColoursToIrc(std::string_view text);

// The same for the Unreal engine's codes (UT2003 and UT2004 names): byte 27 and three bytes of red,
// green and blue. Nothing else is changed.
std::string UnrealColoursToIrc(std::string_view text);

// What the window shows of such a name: the text without its IRC colour codes and resets.
std::string WithoutIrcColours(std::string_view text);

// ClearName, or GameColoursToIrc when toIrc is set.
std::string CleanName(std::string_view text, bool toIrc);

} // namespace tallybot::query
