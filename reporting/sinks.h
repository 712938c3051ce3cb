#pragma once
// What match reporting needs from the IRC control: a way into the channel and a way into the
// operator's pane. The Qt side implements both; tests record what goes through them.

#include <string>

namespace tallybot::reporting {

// Colour value of the lines the program writes into its own pane (pure red, 0x00BBGGRR).
constexpr int kSystemColour = 255;

class ChannelSink {
public:
    virtual ~ChannelSink() = default;
    virtual void SendToChannel(const std::string& text) = 0;                       // one PRIVMSG line
    virtual void NotifyUser(const std::string& nick, const std::string& text) = 0; // one NOTICE line
    virtual std::string Nick() const = 0; // the program's current nick, for instance parameters
};

class PaneSink {
public:
    virtual ~PaneSink() = default;
    virtual void AddText(const std::string& text, int colour) = 0;
};

} // namespace tallybot::reporting
