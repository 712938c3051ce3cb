#include "base/window_units.h"

#include "base/vb_convert.h"

namespace tallybot::base {

namespace {

double UsableDpi(double logicalDpi) {
    return logicalDpi > 0 ? logicalDpi : kClassicDpi;
}

} // namespace

std::int32_t TwipsToPixels(std::int32_t twips, double logicalDpi) {
    return vb::CLng(twips * UsableDpi(logicalDpi) / kTwipsPerInch);
}

std::int32_t PixelsToTwips(std::int32_t pixels, double logicalDpi) {
    return vb::CLng(pixels * kTwipsPerInch / UsableDpi(logicalDpi));
}

} // namespace tallybot::base
