#include "query/qt/query_runner.h"

#include "base/vb_convert.h"

#include <QDateTime>
#include <QHostInfo>
#include <QNetworkDatagram>

namespace tallybot::query {

namespace {

// The socket error numbers the log has always shown for these conditions.
long ErrorNumber(QAbstractSocket::SocketError error) {
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return 10061;
    case QAbstractSocket::RemoteHostClosedError:
        return 10054;
    case QAbstractSocket::HostNotFoundError:
        return 11001;
    case QAbstractSocket::SocketAccessError:
        return 10013;
    case QAbstractSocket::SocketResourceError:
        return 10055;
    case QAbstractSocket::DatagramTooLargeError:
        return 10040;
    case QAbstractSocket::NetworkError:
        return 10050;
    case QAbstractSocket::AddressInUseError:
        return 10048;
    case QAbstractSocket::SocketAddressNotAvailableError:
        return 10049;
    default:
        return 10000 + static_cast<long>(error);
    }
}

// The wildcard address of the remote host's family: IPv4 unless the host is an IPv6 address.
QHostAddress BindAddress(const QHostAddress& remote) {
    return QHostAddress(remote.protocol() == QAbstractSocket::IPv6Protocol ? QHostAddress::AnyIPv6
                                                                           : QHostAddress::AnyIPv4);
}

std::string FirstIPv6(const QHostInfo& info) {
    for (const QHostAddress& a : info.addresses())
        if (a.protocol() == QAbstractSocket::IPv6Protocol) return a.toString().toStdString();
    return {};
}

LocalDateTime Now() {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate d = now.date();
    const QTime t = now.time();
    return {d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second()};
}

} // namespace

QueryRunner::QueryRunner(QueryCycle& cycle, QueryView& view, QObject* parent)
    : QObject(parent), m_cycle(cycle), m_view(view) {
    m_cycle.Attach(this, this);
    connect(&m_socket, &QUdpSocket::readyRead, this, &QueryRunner::OnReadyRead);
    connect(&m_socket, &QUdpSocket::errorOccurred, this, &QueryRunner::OnSocketError);
    connect(&m_timer, &QTimer::timeout, this, &QueryRunner::OnTick);
}

QueryRunner::~QueryRunner() {
    m_cycle.Attach(nullptr, nullptr);
}

void QueryRunner::Click() {
    m_cycle.cmdGamQuery_Click();
    Sync();
    emit Changed();
}

void QueryRunner::Sync() {
    // A form timer with interval 0 (QueryTime 0, or "abc" in the file) never fires; a QTimer would
    // fire at once and again.
    if (!m_view.tmrGamQueryEnabled || m_view.tmrGamQueryInterval <= 0) {
        m_timer.stop();
        return;
    }
    // Changing the interval restarts a running timer, so only a real change is applied.
    if (m_timer.interval() != m_view.tmrGamQueryInterval) m_timer.setInterval(m_view.tmrGamQueryInterval);
    if (!m_timer.isActive()) m_timer.start();
}

void QueryRunner::SetRemoteHost(const std::string& address) {
    m_remoteHost = QHostAddress(QString::fromLatin1(address.data(), static_cast<qsizetype>(address.size())));
    // [Extras] IPv6: a socket bound for the other address family is bound afresh by the next send.
    if (m_socket.state() == QAbstractSocket::BoundState &&
        m_socket.localAddress().protocol() != BindAddress(m_remoteHost).protocol())
        m_socket.abort();
}

void QueryRunner::SetRemotePort(long port) {
    if (port < 0 || port > 65535) throw vb::VbError(380, "Invalid property value");
    m_remotePort = static_cast<quint16>(port);
}

void QueryRunner::SendData(std::string_view datagram) {
    if (m_socket.state() != QAbstractSocket::BoundState && !m_socket.bind(BindAddress(m_remoteHost), 0))
        throw vb::VbError(ErrorNumber(m_socket.error()), m_socket.errorString().toStdString());
    m_sending = true;
    const qint64 sent =
        m_socket.writeDatagram(datagram.data(), static_cast<qint64>(datagram.size()), m_remoteHost, m_remotePort);
    m_sending = false;
    if (sent < 0) throw vb::VbError(ErrorNumber(m_socket.error()), m_socket.errorString().toStdString());
}

void QueryRunner::AddrByName(const std::string& name, int ticket) {
    QHostInfo::lookupHost(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())), this,
                          [this, ticket](const QHostInfo& info) {
                              std::string address;
                              for (const QHostAddress& a : info.addresses()) {
                                  if (a.protocol() == QAbstractSocket::IPv4Protocol) {
                                      address = a.toString().toStdString();
                                      break;
                                  }
                              }
                              // [Extras] IPv6: a name with no IPv4 address may use its IPv6 one.
                              if (address.empty() && m_cycle.Extras().IPv6) address = FirstIPv6(info);
                              m_cycle.AddressResolved(ticket, address);
                              Sync();
                              emit Changed();
                          });
}

bool QueryRunner::FromQueriedServer(const QHostAddress& sender, quint16 senderPort) const {
    return senderPort == m_remotePort && sender.isEqual(m_remoteHost, QHostAddress::TolerantConversion);
}

void QueryRunner::OnReadyRead() {
    bool delivered = false;
    while (m_socket.hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_socket.receiveDatagram();
        // Only the queried address and port may feed the game state; anything else is dropped.
        if (!datagram.isValid() ||
            !FromQueriedServer(datagram.senderAddress(), static_cast<quint16>(datagram.senderPort())))
            continue;
        const QByteArray data = datagram.data();
        m_cycle.sckGamServ_DataArrival(std::string_view(data.constData(), static_cast<std::size_t>(data.size())),
                                       Now());
        delivered = true;
    }
    if (delivered) {
        Sync();
        emit Changed();
    }
}

void QueryRunner::OnSocketError(QAbstractSocket::SocketError error) {
    if (m_sending) return;
    m_cycle.sckGamServ_Error(ErrorNumber(error), m_socket.errorString().toStdString());
    Sync();
    emit Changed();
}

void QueryRunner::OnTick() {
    m_cycle.tmrGamQuery_Timer();
    Sync();
    emit Changed();
}

} // namespace tallybot::query
