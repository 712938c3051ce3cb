#pragma once
// One outgoing TCP connection (the IRC server socket, or the DCC receive socket) with the behaviour the
// IRC core expects of the classic socket control: asynchronous connect with Qt's host name lookup, data
// delivered as it arrives in chunks of at most kMaxChunk bytes, a close by the peer reported once (after
// any data still buffered), errors reported with their Windows Sockets numbers, and a state that stays
// "error" after a failure until the next connect or close. Closing it ourselves reports nothing.

#include "irc/irc_extras_options.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <QAbstractSocket>

class QTcpSocket;

namespace tallybot::irc {

class TcpConnection {
public:
    static constexpr qint64 kMaxChunk = 4096;

    struct Handlers {
        std::function<void()> connected;
        std::function<void(std::string_view)> data;
        std::function<void()> closed;
        std::function<void(int, const std::string&)> error;
    };

    explicit TcpConnection(Handlers handlers);
    ~TcpConnection();
    TcpConnection(const TcpConnection&) = delete;
    TcpConnection& operator=(const TcpConnection&) = delete;

    // host is bytes (Latin-1): a name or a dotted address.
    void Connect(const std::string& host, int port);
    void Send(std::string_view bytes);
    void Close();
    int State() const; // SocketState numbering
    // Extras: TLS for the following connects (the IRC server socket only).
    void SetTls(const TlsOptions& tls) { m_tls = tls; }
    const std::string& RemoteHost() const { return m_remoteHost; }

private:
    // The socket is made at connect time: a plain QTcpSocket, or a QSslSocket only when TLS is on, so
    // a program that never uses TLS never loads the TLS backend.
    void PrepareSocket(bool tls);
    void DeliverPending();
    void OnDisconnected();
    void OnError(QAbstractSocket::SocketError error);
    void ReportError(int number, const std::string& description);

    Handlers m_handlers;
    QTcpSocket* m_socket = nullptr; // owned; a QSslSocket while TLS is switched on
    TlsOptions m_tls;
    std::string m_remoteHost;
    bool m_inError = false;
};

} // namespace tallybot::irc
