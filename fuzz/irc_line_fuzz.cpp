// The line handler with hostile server bytes: each input is split into lines and handed to a
// joined control (DCC accepted, so the offer path runs too; every third input with the switches
// for present-day servers), then typed as user input. Every line the control sends must be one
// wire line: at most 512 bytes, CR LF only at its end. Every pane line, as headless standard output
// writes it, holds no control byte when redirected.

#include "app/logic/pane_text.h"
#include "irc/irc_wire.h"
#include "tests/irc/fake_irc_transport.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace tallybot::irc;

namespace {

void CheckSent(const testing::FakeTransport& transport) {
    for (const auto& line : transport.sent) {
        if (line.size() > kMaxWireLine || line.size() < 2 || line.substr(line.size() - 2) != "\r\n") std::abort();
        for (std::size_t i = 0; i + 2 < line.size(); ++i) {
            if (line[i] == '\r' || line[i] == '\n' || line[i] == '\0') std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    testing::FakeTransport transport;
    testing::FakeClock clock;
    testing::ScriptedQuestions questions;
    testing::MemoryFiles files;
    uscIRC irc{transport, clock, &questions, &files};
    questions.answers = {true, true, true};
    irc.Properties().TimeStamp = size % 2 == 1;
    irc.Properties().ControlType = static_cast<int>(size % 5);
    const bool today = size % 3 == 0; // the present-day switches on every third input
    irc.SetCompat({today, today, today, today, today});
    testing::JoinAsServerWould(irc);
    irc.OnServerData(input);
    irc.OnDccConnected();
    irc.OnDccData(input);
    irc.ProcessUserEntry(input);
    irc.ProcessUserEntry("/" + input);
    CheckSent(transport);
    if (irc.PaneLines().size() > uscIRC::kPaneLimit) std::abort();
    for (const PaneLine& line : irc.PaneLines()) {
        for (const char c : tallybot::app::RenderPaneLine(line, tallybot::app::OutputStyle::Plain))
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) std::abort();
        tallybot::app::RenderPaneLine(line, tallybot::app::OutputStyle::Ansi);
    }
    return 0;
}
