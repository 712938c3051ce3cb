#pragma once
// Words under the mouse in the pane: bounded by blank, tab, line break and , ( ) [ ] { } '.
// Links open in the system's handler, channel names are joined.

#include <string>
#include <string_view>

namespace tallybot::irc {

enum class WordKind { Plain, Link, Channel, Server };

// The word around position pos of a pane line (empty when pos sits on a boundary).
std::string WordAt(std::string_view text, std::size_t pos);

// mailto:, http://, ftp://, www. or ending .html/.htm (lower case) is a link; then "#" a
// channel; then "irc." a server name.
WordKind ClassifyWord(std::string_view word);

} // namespace tallybot::irc
