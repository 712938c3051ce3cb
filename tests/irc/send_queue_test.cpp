#include "irc/send_queue.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

std::string Line(int n) {
    return "PRIVMSG #tally :line " + std::to_string(n) + "\r\n";
}

// Offers the lines at their times and collects what goes out at each moment of a schedule.
struct Step {
    std::uint64_t at;
    std::string offer; // empty: only look at what is due
    std::vector<std::string> written;
};

struct QueueCase {
    const char* name;
    std::vector<Step> steps;
};

class Pacing : public ::testing::TestWithParam<QueueCase> {};

TEST_P(Pacing, WritesWhatTheBucketAllows) {
    SendQueue queue;
    for (const Step& step : GetParam().steps) {
        std::vector<std::string> out = queue.Due(step.at);
        if (!step.offer.empty()) {
            auto more = queue.Offer(step.offer, step.at);
            out.insert(out.end(), more.begin(), more.end());
        }
        EXPECT_EQ(out, step.written) << "at " << step.at;
    }
}

// Five lines go out at once and the sixth waits, then the given steps follow.
std::vector<Step> Burst(std::vector<Step> then) {
    std::vector<Step> steps;
    for (int n = 1; n <= 5; ++n)
        steps.push_back({0, Line(n), {Line(n)}});
    steps.push_back({0, Line(6), {}});
    steps.insert(steps.end(), then.begin(), then.end());
    return steps;
}

const std::string kCtcp = "NOTICE bob :\x01VERSION uscIRC\x01\r\n";

INSTANTIATE_TEST_SUITE_P(
    Cases, Pacing,
    ::testing::Values(QueueCase{"BurstOfFiveThenQueued", Burst({{1999, "", {}}, {2000, "", {Line(6)}}})},
                      QueueCase{"PongAndQuitPassAQueue", Burst({{1, "PONG :irc.test\r\n", {"PONG :irc.test\r\n"}},
                                                                {2,
                                                                 "QUIT Tallybot\xA0"
                                                                 "bye\r\n",
                                                                 {"QUIT Tallybot\xA0"
                                                                  "bye\r\n"}},
                                                                {2000, "", {Line(6)}}})},
                      QueueCase{"QuietLinkRefillsTheBurst",
                                {{0, Line(1), {Line(1)}},
                                 {0, Line(2), {Line(2)}},
                                 {10000, Line(3), {Line(3)}},
                                 {10000, Line(4), {Line(4)}},
                                 {10000, Line(5), {Line(5)}},
                                 {10000, Line(6), {Line(6)}},
                                 {10000, Line(7), {Line(7)}},
                                 {10000, Line(8), {}}}},
                      QueueCase{
                          "OrderKeptBehindAQueue",
                          Burst({{5000, Line(7), {Line(6), Line(7)}}, // tokens came at 2000 and 4000: 6 first, then 7
                                 {5000, "", {}}})},
                      QueueCase{"CtcpAnswersCappedPerWindow",
                                {{0, kCtcp, {kCtcp}},
                                 {100, kCtcp, {kCtcp}},
                                 {200, kCtcp, {kCtcp}},
                                 {300, kCtcp, {kCtcp}},
                                 {400, kCtcp, {kCtcp}},
                                 {500, kCtcp, {}},
                                 {4999, kCtcp, {}},
                                 {5000, kCtcp, {kCtcp}}}}), // the first answer left the window
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tallybot::irc
