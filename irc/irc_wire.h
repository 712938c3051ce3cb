#pragma once
// The outgoing line as it goes on the wire: one trailing CR LF dropped, CR, LF and NUL inside
// the text turned into blanks, cut to 510 bytes, CR LF added. Text from game servers and users
// can never smuggle a second command or overrun the server's line limit.

#include <string>
#include <string_view>

namespace tallybot::irc {

inline constexpr std::size_t kMaxWireLine = 512; // including CR LF

std::string WireLine(std::string_view text);

} // namespace tallybot::irc
