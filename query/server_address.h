#pragma once
// IPv6 server addresses in the server field ([Extras] IPv6): "[2001:db8::1]:27960", "[::1]" and
// a bare "::1" (the default port is added, and the field then shows "[::1]:27960"). Every other
// field goes through the classic address check unchanged.

#include "query/query_cycle_packets.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tallybot::query {

// A textual IPv6 address: eight groups of up to four hex digits, one "::" for a run of zero
// groups, an IPv4 tail in place of the last two groups, an optional "%zone".
bool IsIPv6Literal(std::string_view text);

struct ServerFieldParts {
    std::string host;
    std::string port;
    bool operator==(const ServerFieldParts&) const = default;
};

// The host and port of a field written in one of the IPv6 forms above, the field rewritten to
// "[address]:port"; nothing when the field is not in an IPv6 form.
std::optional<ServerFieldParts> SplitIPv6Field(std::string& field, long defaultPort);

// The checks of an IPv6 host and its port, with the classic texts for a missing or non-numeric
// port; a bracketed host that is no IPv6 address is refused.
AddressCheck ValidateIPv6Address(const std::string& host, const std::string& port,
                                 const std::function<void(const std::string&)>& showMessage);

// The port text of a server field: after "]:" for a bracketed IPv6 field while IPv6 is on,
// otherwise after the first ":" (empty without one).
std::string_view ServerFieldPortText(std::string_view field, bool ipv6);

} // namespace tallybot::query
