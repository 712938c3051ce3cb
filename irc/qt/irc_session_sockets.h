#pragma once
// The IRC sockets with the "Extras" session in front: what the program hands the core as its
// transport. The session's wake-up requests drive one single-shot timer, and before each connect
// the TLS options go to the server socket.
//
//   IrcSessionSockets sockets(clock);
//   uscIRC core(sockets.Transport(), clock, ...);
//   sockets.Attach(&core, [&] { return ExtrasOptionsFrom(settings.Extras); });
//   ...
//   sockets.Attach(nullptr, {});   // before the core goes

#include "irc/irc_session.h"
#include "irc/qt/irc_socket.h"

#include <QTimer>

namespace tallybot::irc {

class IrcSessionSockets {
public:
    explicit IrcSessionSockets(const IrcClock& clock);
    ~IrcSessionSockets();
    IrcSessionSockets(const IrcSessionSockets&) = delete;
    IrcSessionSockets& operator=(const IrcSessionSockets&) = delete;

    IrcTransport& Transport() { return m_session; }
    // The core to serve and where its options come from (read at each operator connect).
    void Attach(uscIRC* core, std::function<IrcExtrasOptions()> options);

    IrcSession& Session() { return m_session; }
    IrcSocket& Sockets() { return m_sockets; }

private:
    IrcSocket m_sockets;
    IrcSession m_session;
    QTimer m_wakeup;
};

} // namespace tallybot::irc
