#pragma once
// IrcSession: the "Extras" additions between the IRC core and its sockets. It is the core's
// IrcTransport and the sockets' IrcSocketEvents, so every byte passes it: outgoing lines are
// paced (SendQueue) and encoded, incoming bytes decoded; during registration it runs the SASL
// exchange; while connected it watches the link (KeepAlive), and after a loss it reconnects
// (ReconnectPolicy). With every switch off it forwards bytes and events unchanged.
//
//   IrcSocket sockets;  IrcSession session(sockets, clock);  uscIRC core(session, clock, ...);
//   sockets.SetEvents(&session);  session.Attach(&core);
//   session.SetWakeup([&](std::uint32_t ms) { timer.start(ms); });  // timer calls session.Tick()
//
// Reconnecting keeps the host's view of the session: the connect button stays "Dis&connect" and
// ConnState keeps its IRC share until the operator disconnects; the new attempt enters state 1
// without StatusChange, and states 2 and 3 (on-join post, perform) are raised as on any join.

#include "irc/irc_extras_options.h"
#include "irc/irc_session_hooks.h"
#include "irc/irc_transport.h"
#include "irc/keep_alive.h"
#include "irc/reconnect_policy.h"
#include "irc/sasl_exchange.h"
#include "irc/send_queue.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tallybot::irc {

class uscIRC;

class IrcSession final : public IrcTransport, public IrcSocketEvents, public IrcSessionHooks {
public:
    IrcSession(IrcTransport& sockets, const IrcClock& clock);
    IrcSession(const IrcSession&) = delete;
    IrcSession& operator=(const IrcSession&) = delete;

    // The core the socket events go to; null detaches (events are then dropped).
    void Attach(uscIRC* core);
    // Read whenever the host connects; until then the options of SetOptions hold.
    void SetOptionsSource(std::function<IrcExtrasOptions()> source) { m_source = std::move(source); }
    void SetOptions(const IrcExtrasOptions& options) { m_options = options; }
    const IrcExtrasOptions& Options() const { return m_options; }
    // Called before each connect with the options in force, so the adapter can set up TLS.
    void SetBeforeConnect(std::function<void(const IrcExtrasOptions&)> hook) { m_beforeConnect = std::move(hook); }
    // Asks for a Tick after delayMs; a later request replaces an earlier one.
    void SetWakeup(std::function<void(std::uint32_t)> wakeup) { m_wakeup = std::move(wakeup); }
    void Tick();

    const SendQueue& Queue() const { return m_queue; }

    // IrcTransport (from the core)
    void ServerConnect(const std::string& host, int port) override;
    void ServerSend(std::string_view bytes) override;
    void ServerClose() override;
    int ServerState() const override { return m_sockets.ServerState(); }
    std::string ServerLocalHostName() const override { return m_sockets.ServerLocalHostName(); }
    std::string ServerRemoteHost() const override { return m_sockets.ServerRemoteHost(); }
    void IdentListen(int port) override { m_sockets.IdentListen(port); }
    int IdentState() const override { return m_sockets.IdentState(); }
    void IdentAnswer(long requestId, std::string_view line) override { m_sockets.IdentAnswer(requestId, line); }
    void IdentClose() override { m_sockets.IdentClose(); }
    void DccConnect(const std::string& address, int port) override { m_sockets.DccConnect(address, port); }
    void DccSend(std::string_view bytes) override { m_sockets.DccSend(bytes); }
    void DccClose() override { m_sockets.DccClose(); }
    std::string MachineHostName(int& errorCode) const override { return m_sockets.MachineHostName(errorCode); }
    std::string ResolveIPv4(const std::string& hostName) const override { return m_sockets.ResolveIPv4(hostName); }

    // IrcSocketEvents (from the sockets)
    void OnServerConnected() override;
    void OnServerData(std::string_view bytes) override;
    void OnServerClosed() override;
    void OnServerError(int number, const std::string& description) override;
    void OnIdentConnectionRequest(long requestId, int localPort) override;
    void OnIdentData(std::string_view bytes) override;
    void OnIdentError(int number, const std::string& description) override;
    void OnDccConnected() override;
    void OnDccData(std::string_view bytes) override;
    void OnDccClosed() override;
    void OnDccError(int number, const std::string& description) override;

    // IrcSessionHooks (from the core)
    void OnHostConnect() override;
    void OnHostDisconnect() override;
    bool ReconnectsAfterLoss() const override;
    void OnConnectionLost() override;

    static constexpr std::size_t kWatchLineLimit = 16 * 1024;

private:
    std::uint64_t Now();
    void Write(std::string_view wireLine); // encoded, straight to the socket
    void WriteDirect(const std::string& text);
    void WatchLines(std::string_view decoded);
    void Note(const std::string& text, bool error);
    void ArmWakeup();

    IrcTransport& m_sockets;
    const IrcClock& m_clock;
    uscIRC* m_core = nullptr;
    std::function<IrcExtrasOptions()> m_source;
    std::function<void(const IrcExtrasOptions&)> m_beforeConnect;
    std::function<void(std::uint32_t)> m_wakeup;
    IrcExtrasOptions m_options;

    SendQueue m_queue;
    Utf8Decoder m_decoder;
    SaslExchange m_sasl;
    KeepAlive m_keepAlive;
    ReconnectPolicy m_reconnect;
    std::string m_watchCarry; // unterminated tail of the line watch
    bool m_wanted = false;    // the operator wants to be connected
    bool m_open = false;      // the server socket is connected
    std::uint32_t m_lastTick = 0;
    std::uint64_t m_now = 0;
    bool m_clockStarted = false;
};

} // namespace tallybot::irc
