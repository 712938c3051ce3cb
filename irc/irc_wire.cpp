#include "irc/irc_wire.h"

namespace tallybot::irc {

std::string WireLine(std::string_view text) {
    if (text.size() >= 2 && text.substr(text.size() - 2) == "\r\n") text.remove_suffix(2);
    if (text.size() > kMaxWireLine - 2) text = text.substr(0, kMaxWireLine - 2);
    std::string line(text);
    for (char& c : line) {
        if (c == '\r' || c == '\n' || c == '\0') c = ' ';
    }
    line += "\r\n";
    return line;
}

} // namespace tallybot::irc
