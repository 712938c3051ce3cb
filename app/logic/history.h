#pragma once
// The history lists of the five combo boxes: at most four entries, most recent first.

#include <string>
#include <vector>

namespace tallybot::app {

// Moves text to the top of list: an entry equal to it (both trimmed of blanks) among the first
// four is swapped with the top entry; otherwise the entries shift down, the fourth falls off and
// the text goes on top. Empty text changes nothing.
void AddToHistory(const std::string& text, std::vector<std::string>& list);

} // namespace tallybot::app
