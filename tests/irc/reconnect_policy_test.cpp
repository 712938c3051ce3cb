#include "irc/keep_alive.h"
#include "irc/reconnect_policy.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

// Every attempt fails at once: the pauses grow 10, 20, 40, 80, 160 s and stay at 300 s.
TEST(ReconnectPolicy, PausesDoubleUpToFiveMinutes) {
    ReconnectPolicy policy;
    std::uint64_t now = 1000;
    std::vector<std::uint64_t> pauses;
    for (int i = 0; i < 8; ++i) {
        const std::uint64_t at = policy.ConnectionLost(now);
        EXPECT_FALSE(policy.Due(at - 1));
        EXPECT_TRUE(policy.Due(at));
        pauses.push_back((at - now) / 1000);
        now = at;
        policy.Attempting(now);
        EXPECT_FALSE(policy.Due(now + 1'000'000));
    }
    EXPECT_EQ(pauses, (std::vector<std::uint64_t>{10, 20, 40, 80, 160, 300, 300, 300}));
}

TEST(ReconnectPolicy, AcceptedConnectionStartsOverButKeepsTenSecondsBetweenAttempts) {
    ReconnectPolicy policy;
    policy.ConnectionLost(0);
    policy.Attempting(10'000);
    policy.ConnectionLost(10'000); // the next pause would be 20 s
    policy.Attempting(30'000);
    policy.Registered();
    // Accepted, then lost again 2 s after the attempt: 10 s from the loss.
    EXPECT_EQ(policy.ConnectionLost(32'000), 42'000u);
    policy.Attempting(42'000);
    policy.Registered();
    // Lost at once (no time passes): the attempt still waits 10 s after the previous one.
    EXPECT_EQ(policy.ConnectionLost(42'000), 52'000u);
}

TEST(ReconnectPolicy, OperatorCancelsThePendingAttempt) {
    ReconnectPolicy policy;
    policy.ConnectionLost(0);
    policy.ConnectionLost(0);
    policy.Cancel();
    EXPECT_FALSE(policy.NextAttemptMs());
    EXPECT_EQ(policy.ConnectionLost(100'000), 110'000u);
}

struct WatchStep {
    std::uint64_t at;
    bool traffic;
    KeepAlive::Action expected;
};

TEST(KeepAlive, PingsAQuietLinkAndGivesUpAfterFiveMinutes) {
    KeepAlive watch;
    watch.Traffic(0);
    const std::vector<WatchStep> steps = {
        {119'999, false, KeepAlive::Action::None},     {120'000, false, KeepAlive::Action::SendPing},
        {130'000, false, KeepAlive::Action::None},     {200'000, true, KeepAlive::Action::None},
        {319'999, false, KeepAlive::Action::None},     {320'000, false, KeepAlive::Action::SendPing},
        {440'000, false, KeepAlive::Action::SendPing}, {499'999, false, KeepAlive::Action::None},
        {500'000, false, KeepAlive::Action::Dead},
    };
    for (const WatchStep& step : steps) {
        if (step.traffic) watch.Traffic(step.at);
        EXPECT_EQ(watch.Check(step.at), step.expected) << "at " << step.at;
    }
    EXPECT_EQ(watch.NextCheckMs(), 500'000u);
}

} // namespace
} // namespace tallybot::irc
