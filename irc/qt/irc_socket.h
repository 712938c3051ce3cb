#pragma once
// IrcSocket: the IRC core's three sockets on Qt. The server connection (sckServer) and the DCC receive
// connection (sckDCC) are TcpConnections, the ident responder (sckIdent) an IdentListener; their Qt signals
// become calls on the core's IrcSocketEvents, and the core's requests become socket operations. Bytes pass
// through untouched; host names cross into Qt as Latin-1. Nothing here ever blocks on the network except
// ResolveIPv4, which the core calls only for this machine's own name.
//
//   IrcSocket sockets;
//   uscIRC core(sockets, clock, ...);   // the core calls out through IrcTransport
//   sockets.SetEvents(&core);            // and hears from the sockets through IrcSocketEvents

#include "irc/irc_transport.h"
#include "irc/qt/ident_listener.h"
#include "irc/qt/tcp_connection.h"

namespace tallybot::irc {

class IrcSocket final : public IrcTransport {
public:
    explicit IrcSocket(IrcSocketEvents* events = nullptr);
    // Sockets closing during destruction report nothing: the core may already be gone.
    ~IrcSocket() override { m_events = nullptr; }
    IrcSocket(const IrcSocket&) = delete;
    IrcSocket& operator=(const IrcSocket&) = delete;

    void SetEvents(IrcSocketEvents* events) { m_events = events; }
    // Extras: TLS for the next server connects.
    void SetServerTls(const TlsOptions& tls) { m_server.SetTls(tls); }

    void ServerConnect(const std::string& host, int port) override;
    void ServerSend(std::string_view bytes) override;
    void ServerClose() override;
    int ServerState() const override;
    std::string ServerLocalHostName() const override;
    std::string ServerRemoteHost() const override;

    void IdentListen(int port) override;
    int IdentState() const override;
    void IdentAnswer(long requestId, std::string_view line) override;
    void IdentClose() override;

    void DccConnect(const std::string& dottedAddress, int port) override;
    void DccSend(std::string_view bytes) override;
    void DccClose() override;

    std::string MachineHostName(int& errorCode) const override;
    std::string ResolveIPv4(const std::string& hostName) const override;

private:
    // A handler that passes a socket event on to the core, if one is attached.
    template <auto Event> auto Forward() {
        return [this](auto... args) {
            if (m_events) (m_events->*Event)(args...);
        };
    }

    IrcSocketEvents* m_events;
    TcpConnection m_server;
    IdentListener m_ident;
    TcpConnection m_dcc;
};

} // namespace tallybot::irc
