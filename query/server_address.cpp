#include "query/server_address.h"

#include "base/vb_convert.h"

#include <cctype>
#include <vector>

namespace tallybot::query {

namespace {

bool IsHexGroup(std::string_view group) {
    if (group.empty() || group.size() > 4) return false;
    for (char c : group)
        if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
    return true;
}

bool IsDottedQuad(std::string_view text) {
    int parts = 0;
    while (true) {
        const std::size_t dot = text.find('.');
        const std::string_view part = text.substr(0, dot);
        if (part.empty() || part.size() > 3) return false;
        int value = 0;
        for (char c : part) {
            if (!std::isdigit(static_cast<unsigned char>(c))) return false;
            value = value * 10 + (c - '0');
        }
        if (value > 255) return false;
        ++parts;
        if (dot == std::string_view::npos) break;
        text.remove_prefix(dot + 1);
    }
    return parts == 4;
}

// Groups of one side of "::"; -1 when a group is malformed. The IPv4 tail counts as two.
int CountGroups(std::string_view side, bool mayEndInQuad) {
    if (side.empty()) return 0;
    int groups = 0;
    while (true) {
        const std::size_t colon = side.find(':');
        const std::string_view group = side.substr(0, colon);
        if (colon == std::string_view::npos && mayEndInQuad && group.find('.') != std::string_view::npos)
            return IsDottedQuad(group) ? groups + 2 : -1;
        if (!IsHexGroup(group)) return -1;
        ++groups;
        if (colon == std::string_view::npos) return groups;
        side.remove_prefix(colon + 1);
    }
}

} // namespace

bool IsIPv6Literal(std::string_view text) {
    if (const std::size_t zone = text.find('%'); zone != std::string_view::npos) {
        const std::string_view id = text.substr(zone + 1);
        if (id.empty()) return false;
        for (char c : id)
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '_' && c != '-') return false;
        text = text.substr(0, zone);
    }
    if (text.find(':') == std::string_view::npos) return false;
    const std::size_t gap = text.find("::");
    if (gap == std::string_view::npos) return CountGroups(text, true) == 8;
    if (text.find("::", gap + 1) != std::string_view::npos) return false;
    const int left = CountGroups(text.substr(0, gap), false);
    const int right = CountGroups(text.substr(gap + 2), true);
    return left >= 0 && right >= 0 && left + right <= 7;
}

std::optional<ServerFieldParts> SplitIPv6Field(std::string& field, long defaultPort) {
    const std::string port = vb::CStr(defaultPort);
    if (!field.empty() && field.front() == '[') {
        const std::size_t close = field.find(']');
        if (close == std::string::npos) return std::nullopt;
        ServerFieldParts parts{field.substr(1, close - 1), field.substr(close + 1)};
        if (parts.port.empty()) {
            field += ":" + port;
            parts.port = port;
        } else if (parts.port.front() == ':') {
            parts.port.erase(0, 1);
        }
        return parts;
    }
    if (!IsIPv6Literal(field)) return std::nullopt;
    ServerFieldParts parts{field, port};
    field = "[" + field + "]:" + port;
    return parts;
}

AddressCheck ValidateIPv6Address(const std::string& host, const std::string& port,
                                 const std::function<void(const std::string&)>& showMessage) {
    const auto refuse = [&](const std::string& message) {
        showMessage(message);
        return AddressCheck{};
    };
    if (const auto refusal = HostPortRefusal(host, port)) return refuse(*refusal);
    if (!IsIPv6Literal(host)) return refuse("The IPv6 address entered is not valid!");
    return {AddressCheck::Kind::Address, host};
}

std::string_view ServerFieldPortText(std::string_view field, bool ipv6) {
    if (ipv6 && !field.empty() && field.front() == '[') {
        const std::size_t close = field.find("]:");
        return close == std::string_view::npos ? std::string_view{} : field.substr(close + 2);
    }
    const std::size_t colon = field.find(':');
    return colon == std::string_view::npos ? std::string_view{} : field.substr(colon + 1);
}

} // namespace tallybot::query
