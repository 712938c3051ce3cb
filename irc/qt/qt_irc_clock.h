#pragma once
// The IRC core's clock on Qt: a wrapping millisecond tick from the monotonic clock (the CTCP PING time)
// and local calendar time.

#include "irc/irc_transport.h"

namespace tallybot::irc {

class QtIrcClock final : public IrcClock {
public:
    std::uint32_t TickCount() const override;
    LocalTime Now() const override;
    LocalTime FromEpoch(std::int64_t seconds) const override;
};

} // namespace tallybot::irc
