#pragma once
// Window positions in the settings file are twips (1440 to the inch), as the classic program kept
// them; the screen works in pixels. At 96 dpi a pixel is 15 twips.

#include <cstdint>

namespace tallybot::base {

inline constexpr double kTwipsPerInch = 1440.0;
inline constexpr double kClassicDpi = 96.0; // used when the screen reports no dpi

// Pixels on a screen of the given logical dpi (96 when it reports none); rounds half to even.
std::int32_t TwipsToPixels(std::int32_t twips, double logicalDpi);
// Twips for the settings file; a position beyond the file's 32-bit range fails with Overflow (6).
std::int32_t PixelsToTwips(std::int32_t pixels, double logicalDpi);

} // namespace tallybot::base
