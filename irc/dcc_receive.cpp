#include "irc/dcc_receive.h"

#include <cmath>

namespace tallybot::irc {

std::size_t DccReceive::Fits(std::size_t n) const {
    if (!(Size > static_cast<double>(Position))) return 0;
    const double room = Size - static_cast<double>(Position);
    return static_cast<double>(n) <= room ? n : static_cast<std::size_t>(room);
}

std::string DccReceive::Ack() const {
    const auto p = static_cast<std::uint32_t>(Position & 0xFFFFFFFFu);
    std::string ack(4, '\0');
    ack[0] = static_cast<char>((p >> 24) & 0xFF);
    ack[1] = static_cast<char>((p >> 16) & 0xFF);
    ack[2] = static_cast<char>((p >> 8) & 0xFF);
    ack[3] = static_cast<char>(p & 0xFF);
    return ack;
}

std::string SafeBaseName(std::string_view offered) {
    const auto cut = offered.find_last_of("/\\");
    if (cut != std::string_view::npos) offered.remove_prefix(cut + 1);
    std::string name;
    for (char c : offered) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 32 || u == 127 || c == '"' || c == ':' || c == '*' || c == '?' || c == '<' || c == '>' || c == '|')
            continue;
        name += c;
    }
    const auto first = name.find_first_not_of(". ");
    name = first == std::string::npos ? std::string() : name.substr(first);
    return name.empty() ? std::string("dcc_file") : name;
}

std::string FormatByteCount(double size) {
    if (!std::isfinite(size)) return {};
    const double rounded = std::round(std::fabs(size));
    if (rounded < 1) return {};
    std::string digits = std::to_string(static_cast<unsigned long long>(std::fmin(rounded, 1e18)));
    std::string out;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += ',';
        out += digits[i];
    }
    return size < 0 ? "-" + out : out;
}

} // namespace tallybot::irc
