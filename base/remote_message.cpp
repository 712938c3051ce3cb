#include "base/remote_message.h"

namespace tallybot::base {

std::string EncodeRemoteMessage(std::string_view text, std::uint8_t identifier) {
    std::string message(1, static_cast<char>(identifier));
    message.append(text.substr(0, kRemoteBufferSize));
    return message;
}

std::optional<std::string> DecodeRemoteMessage(std::string_view message) {
    if (message.empty() || static_cast<std::uint8_t>(message[0]) != kRemoteCommandId) return std::nullopt;
    std::string_view text = message.substr(1, kRemoteBufferSize);
    if (const auto zero = text.find('\0'); zero != std::string_view::npos) text = text.substr(0, zero);
    return std::string(text);
}

} // namespace tallybot::base
