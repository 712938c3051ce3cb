#include "query/a2s_assembly.h"

#include <algorithm>

namespace tallybot::query {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kSplitHeader = 12; // FF FF FF FE, id, total, number, split size

std::uint32_t Le32(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return value;
}

} // namespace

std::optional<std::string> A2SAssembly::Add(std::string_view datagram) {
    if (datagram.substr(0, 4) == "\xFF\xFF\xFF\xFF"sv) return std::string(datagram);
    if (datagram.substr(0, 4) != "\xFF\xFF\xFF\xFE"sv || datagram.size() <= kSplitHeader) return std::nullopt;

    const std::uint32_t id = Le32(datagram.substr(4, 4));
    const std::size_t total = static_cast<unsigned char>(datagram[8]);
    const std::size_t number = static_cast<unsigned char>(datagram[9]);
    if ((id & 0x80000000u) != 0 || total == 0 || total > kMaxA2SParts || number >= total) return std::nullopt;
    const std::string_view payload = datagram.substr(kSplitHeader);

    // A new reply (or one that changed its part count) replaces whatever was in progress.
    if (m_parts.empty() || id != m_id || total != m_parts.size()) {
        Reset();
        m_id = id;
        m_parts.resize(total);
    }
    std::optional<std::string>& slot = m_parts[number];
    if (slot) m_bytes -= slot->size(); // a repeated part replaces the earlier copy
    if (m_bytes + payload.size() > kMaxA2SBytes) {
        Reset();
        return std::nullopt;
    }
    slot.emplace(payload);
    m_bytes += payload.size();

    if (!std::all_of(m_parts.begin(), m_parts.end(), [](const auto& part) { return part.has_value(); }))
        return std::nullopt;
    std::string reply;
    reply.reserve(m_bytes);
    for (const auto& part : m_parts)
        reply += *part;
    Reset();
    if (reply.substr(0, 4) != "\xFF\xFF\xFF\xFF"sv) return std::nullopt;
    return reply;
}

void A2SAssembly::Reset() {
    m_id = 0;
    m_parts.clear();
    m_bytes = 0;
}

std::size_t A2SAssembly::PartsHeld() const {
    return static_cast<std::size_t>(
        std::count_if(m_parts.begin(), m_parts.end(), [](const auto& part) { return part.has_value(); }));
}

} // namespace tallybot::query
