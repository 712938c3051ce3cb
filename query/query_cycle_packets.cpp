#include "query/query_cycle_packets.h"

#include "base/vb_convert.h"
#include "query/game_state.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace tallybot::query {

namespace {

using namespace std::string_literals;

const std::string kOutOfBand = "\xFF\xFF\xFF\xFF"s;
const std::string kFarCryPrefix = "\x7F\xFF\xFF\xFF"s;

// The one counter of the three-step engines: returns the current step and moves to the next.
int NextStep(int& queryStep) {
    const int step = queryStep;
    queryStep = (step + 1) % 3;
    return step;
}

bool IsNumeric(const std::string& text) {
    try {
        vb::ParseNumber(text);
        return true;
    } catch (const vb::VbError&) {
        return false;
    }
}

bool AllDigits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
}

} // namespace

std::string BuildQuery(int engineId, int& queryStep) {
    static const char* const kHlSteps[] = {"info", "players", "rules"};
    static const char* const kFcSteps[] = {"status", "players", "rules"};
    switch (engineId) {
    case kEngineQ2:
        return kOutOfBand + "status";
    case kEngineQ3:
    case kEngineRTCW:
    case kEngineEF:
    case kEngineJK2:
    case kEngineSoF2:
    case kEngineET:
    case kEngineJA:
    case kEngineCoD:
    case kEngineEF2:
        return kOutOfBand + "getstatus";
    case kEngineMoH:
        return kOutOfBand + "\x02getstatus";
    case kEngineUT:
    case kEngineAA:
        return "\\status\\";
    case kEngineHL:
        return kOutOfBand + kHlSteps[NextStep(queryStep)];
    case kEngineUT2k3:
        return "\x78\x00\x00\x00"s + static_cast<char>(NextStep(queryStep));
    case kEngineFC:
        return kFarCryPrefix + kFcSteps[NextStep(queryStep)];
    case kEngineD3:
        return "\xFF\xFFgetinfo\x00\x00\x00\x00"s;
    default:
        return {};
    }
}

std::optional<std::string> AssembleGameSpy(std::string& buffer, std::string_view datagram) {
    if (datagram.find("\\final\\") == std::string_view::npos) {
        buffer.assign(datagram);
        return std::nullopt;
    }
    std::string reply = std::move(buffer);
    reply.append(datagram);
    buffer.clear();
    return reply;
}

std::optional<std::string> HostPortRefusal(const std::string& host, const std::string& port) {
    if (host.empty() || port.empty()) return "You have to enter both, an address and a port for the new server!";
    if (!IsNumeric(port)) return "The specified port must be numerical!";
    return std::nullopt;
}

AddressCheck ValidateAddress(const std::string& host, const std::string& port,
                             const std::function<void(const std::string&)>& showMessage) {
    const auto refuse = [&](const std::string& message) {
        showMessage(message);
        return AddressCheck{};
    };
    if (const auto refusal = HostPortRefusal(host, port)) return refuse(*refusal);

    // Digits and dots read as an address; anything else is a name for the resolver.
    std::string digits = host;
    std::erase(digits, '.');
    if (!AllDigits(digits)) return {AddressCheck::Kind::HostName, host};

    std::vector<std::string_view> parts;
    const std::string_view text = host;
    for (std::size_t from = 0;;) {
        const std::size_t dot = text.find('.', from);
        parts.push_back(text.substr(from, dot == std::string_view::npos ? std::string_view::npos : dot - from));
        if (dot == std::string_view::npos) break;
        from = dot + 1;
    }
    if (parts.size() != 4) return refuse("The IP address entered does not contain 4 sets of numbers!");
    for (std::size_t i = 0; i < parts.size(); ++i) {
        // An empty set has no value at all, so it cannot lie between 0 and 255.
        if (parts[i].empty() || vb::Val(parts[i]) > 255)
            return refuse("The " + std::to_string(i + 1) + ". value has to be between 0 and 255!");
    }
    return {AddressCheck::Kind::Address, host};
}

std::string UnresolvedNameMessage(const std::string& host) {
    return "The server name " + host + " could not be resolved!";
}

} // namespace tallybot::query
