#pragma once
// Reassembly of split A2S replies. A reply too long for one datagram arrives in parts:
//   FF FF FF FE  id (4, LE)  total (1)  number (1)  split size (2, LE)  payload ...
// The payloads in number order form the whole reply (which begins FF FF FF FF). A set id is
// bzip2-compressed, which this program does not read; such replies are dropped. Bounded: one
// reply in progress, at most kMaxA2SParts parts and kMaxA2SBytes bytes.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::query {

inline constexpr std::size_t kMaxA2SParts = 32;
inline constexpr std::size_t kMaxA2SBytes = 64 * 1024;

class A2SAssembly {
public:
    // One datagram in: an unsplit reply comes straight back; a part is held until its reply is
    // whole, which then comes back; anything else gives nothing.
    std::optional<std::string> Add(std::string_view datagram);
    void Reset();
    // Parts held for the reply in progress.
    std::size_t PartsHeld() const;

private:
    std::uint32_t m_id = 0;
    std::vector<std::optional<std::string>> m_parts; // empty: nothing in progress
    std::size_t m_bytes = 0;
};

} // namespace tallybot::query
