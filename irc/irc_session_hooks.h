#pragma once
// How the additions of the "Extras" section (automatic reconnect) learn how a connection ends.
// The core calls these when a hook object is installed; without one it behaves as it always did.

namespace tallybot::irc {

class IrcSessionHooks {
public:
    virtual ~IrcSessionHooks() = default;
    // The host called Connect or Disconnect (typed /quit included).
    virtual void OnHostConnect() = 0;
    virtual void OnHostDisconnect() = 0;
    // Asked when the server sends ERROR or the socket fails: true when a new attempt will follow,
    // so the connection is dropped quietly and the host keeps its session (no Disconnected).
    virtual bool ReconnectsAfterLoss() const = 0;
    // The connection is gone and ConnectStatus is 0 (closed by the peer, or dropped as above).
    virtual void OnConnectionLost() = 0;
};

} // namespace tallybot::irc
