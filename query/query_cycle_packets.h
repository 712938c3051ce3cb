#pragma once
// Request packets of every engine, the GameSpy reply assembly, and the check of the server
// address the operator typed. Plain functions so the fuzzer and the tests reach them directly.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tallybot::query {

// The request datagram of an engine; advances queryStep (0, 1, 2, 0, ...) for HL, UT2k3 and FC,
// which share that one counter. Unknown engines get an empty packet.
std::string BuildQuery(int engineId, int& queryStep);

// One GameSpy datagram into the assembly buffer: a datagram holding "\final\" completes the reply
// (buffer first, then the datagram) and empties the buffer; any other datagram replaces the
// buffer, so only the last two datagrams of a longer reply survive. The buffer never holds more
// than one datagram.
std::optional<std::string> AssembleGameSpy(std::string& buffer, std::string_view datagram);

// Outcome of the address check: the address to query, a host name still to be resolved, or a
// refusal whose reason has been shown to the operator.
struct AddressCheck {
    enum class Kind { Rejected, Address, HostName };
    Kind kind = Kind::Rejected;
    std::string text;
    bool operator==(const AddressCheck&) const = default;
};

// The first checks of every address check: the text refusing a missing host or port, or a port
// that is no number; nothing when both pass.
std::optional<std::string> HostPortRefusal(const std::string& host, const std::string& port);

// The numeric checks of ValidateAddress; each refusal hands its message to showMessage.
AddressCheck ValidateAddress(const std::string& host, const std::string& port,
                             const std::function<void(const std::string&)>& showMessage);

// Text shown when a host name does not resolve; the start is abandoned.
std::string UnresolvedNameMessage(const std::string& host);

} // namespace tallybot::query
