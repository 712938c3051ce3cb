#include "irc/qt/irc_socket.h"

#include <QHostAddress>
#include <QHostInfo>

namespace tallybot::irc {

IrcSocket::IrcSocket(IrcSocketEvents* events)
    : m_events(events),
      m_server({Forward<&IrcSocketEvents::OnServerConnected>(), Forward<&IrcSocketEvents::OnServerData>(),
                Forward<&IrcSocketEvents::OnServerClosed>(), Forward<&IrcSocketEvents::OnServerError>()}),
      m_ident({Forward<&IrcSocketEvents::OnIdentConnectionRequest>(), Forward<&IrcSocketEvents::OnIdentData>(),
               Forward<&IrcSocketEvents::OnIdentError>()}),
      m_dcc({Forward<&IrcSocketEvents::OnDccConnected>(), Forward<&IrcSocketEvents::OnDccData>(),
             Forward<&IrcSocketEvents::OnDccClosed>(), Forward<&IrcSocketEvents::OnDccError>()}) {}

void IrcSocket::ServerConnect(const std::string& host, int port) {
    m_server.Connect(host, port);
}

void IrcSocket::ServerSend(std::string_view bytes) {
    m_server.Send(bytes);
}

void IrcSocket::ServerClose() {
    m_server.Close();
}

int IrcSocket::ServerState() const {
    return m_server.State();
}

std::string IrcSocket::ServerLocalHostName() const {
    return QHostInfo::localHostName().toLatin1().toStdString();
}

std::string IrcSocket::ServerRemoteHost() const {
    return m_server.RemoteHost();
}

void IrcSocket::IdentListen(int port) {
    m_ident.Listen(port);
}

int IrcSocket::IdentState() const {
    return m_ident.State();
}

void IrcSocket::IdentAnswer(long requestId, std::string_view line) {
    m_ident.Answer(requestId, line);
}

void IrcSocket::IdentClose() {
    m_ident.Close();
}

void IrcSocket::DccConnect(const std::string& dottedAddress, int port) {
    m_dcc.Connect(dottedAddress, port);
}

void IrcSocket::DccSend(std::string_view bytes) {
    m_dcc.Send(bytes);
}

void IrcSocket::DccClose() {
    m_dcc.Close();
}

std::string IrcSocket::MachineHostName(int& errorCode) const {
    const QString name = QHostInfo::localHostName();
    // Qt gives no reason when the name cannot be read; report it as the lookup failure it amounts to.
    errorCode = name.isEmpty() ? 11001 : 0;
    return name.toLatin1().toStdString();
}

std::string IrcSocket::ResolveIPv4(const std::string& hostName) const {
    const QHostInfo info =
        QHostInfo::fromName(QString::fromLatin1(hostName.data(), static_cast<qsizetype>(hostName.size())));
    for (const QHostAddress& address : info.addresses()) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol) return address.toString().toLatin1().toStdString();
    }
    return {};
}

} // namespace tallybot::irc
