#pragma once
// The remote-control message: one identifier byte, then at most 255 bytes of command text.
// Only identifier 3 carries a command; the text is cut at its first zero byte, as the receiving
// 255-byte buffer would cut it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallybot::base {

constexpr std::uint8_t kRemoteCommandId = 3;
constexpr std::size_t kRemoteBufferSize = 255;

std::string EncodeRemoteMessage(std::string_view text, std::uint8_t identifier = kRemoteCommandId);
// The command text of a received message, or nothing for an empty message or another identifier.
std::optional<std::string> DecodeRemoteMessage(std::string_view message);

} // namespace tallybot::base
