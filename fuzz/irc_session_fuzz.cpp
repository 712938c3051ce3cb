// The Extras session with hostile server bytes: every switch on (UTF-8, SASL, pacing, reconnect),
// the input fed in two reads (so characters and lines split between them) to a registering
// control. Every line that reaches the socket must be one wire line: at most 512 bytes, CR LF only
// at its end, and in UTF-8 mode never a character cut in half.

#include "irc/irc_session.h"
#include "irc/irc_text_codec.h"
#include "irc/irc_wire.h"
#include "tests/irc/fake_irc_transport.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace tallybot::irc;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    testing::FakeTransport sockets;
    testing::FakeClock clock;
    IrcSession session(sockets, clock);
    uscIRC irc(session, clock);
    session.Attach(&irc);
    IrcExtrasOptions options;
    options.Sasl = {size % 2 ? "PLAIN" : "EXTERNAL", "user", "pass"};
    options.Encoding = IrcEncoding::Utf8;
    options.PacedSending = true;
    options.AutoReconnect = true;
    session.SetOptionsSource([&] { return options; });
    irc.Properties().Ident = false;
    irc.Connect();
    session.OnServerConnected();
    const std::size_t half = size / 2;
    session.OnServerData(std::string_view(input).substr(0, half));
    session.OnServerData(std::string_view(input).substr(half));
    irc.SendToChannel(input);
    for (int i = 0; i < 20; ++i) {
        clock.ticks += 30'000;
        session.Tick();
    }
    for (const std::string& line : sockets.sent) {
        if (line.size() > kMaxWireLine || line.size() < 2 || line.substr(line.size() - 2) != "\r\n") std::abort();
        for (std::size_t i = 0; i + 2 < line.size(); ++i) {
            if (line[i] == '\r' || line[i] == '\n' || line[i] == '\0') std::abort();
        }
        const std::string body = line.substr(0, line.size() - 2);
        for (std::size_t i = 0; i < body.size();) {
            const int length = Utf8SequenceAt(body, i);
            if (length < 1) std::abort(); // not UTF-8, or a character cut at the end
            i += static_cast<std::size_t>(length);
        }
    }
    session.Attach(nullptr);
    return 0;
}
