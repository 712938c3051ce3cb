#pragma once
// Colour codes that IRC clients read as written ([Extras] TwoDigitColours). A client takes up to
// two digits after code 3, and a comma with up to two more as the background, so "\x03" "2"
// followed by "14" shows colour 21 and loses the "1".

#include <string>
#include <string_view>

namespace tallybot::reporting {

// The colour code ("\x03" "2", "\x03" "4,1", "\x03" "10") with its last number written as two
// digits when the text that follows it begins with a digit, or, for a foreground alone, a comma.
// Any other code, or one that is already safe, is returned as it is.
std::string FitColourCode(std::string_view code, std::string_view following);

} // namespace tallybot::reporting
