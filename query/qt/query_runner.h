#pragma once
// The Qt side of the query cycle: one UDP socket and one timer, held by value. Turns socket
// datagrams, socket errors and timer ticks into calls on QueryCycle, carries out its sends and
// name lookups, and keeps the timer in line with the view state after every event.

#include "query/query_cycle.h"

#include <QHostAddress>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

namespace tallybot::query {

class QueryRunner : public QObject, public QuerySocket, public NameResolver {
    Q_OBJECT

public:
    // Attaches itself to the cycle as its socket and resolver.
    QueryRunner(QueryCycle& cycle, QueryView& view, QObject* parent = nullptr);
    ~QueryRunner() override;

    // The query button: Start or Stop, then Sync.
    void Click();
    // Applies the view's timer state (enabled, interval) to the timer; call after any other
    // call into the cycle made from outside this adapter.
    void Sync();

    quint16 LocalPort() const { return m_socket.localPort(); }
    const QTimer& Timer() const { return m_timer; }

    // QuerySocket
    void SetRemoteHost(const std::string& address) override;
    void SetRemotePort(long port) override;
    void SendData(std::string_view datagram) override;
    // NameResolver
    void AddrByName(const std::string& name, int ticket) override;

signals:
    // After every event that went into the cycle, so a window can mirror the view state.
    void Changed();

private:
    void OnReadyRead();
    void OnSocketError(QAbstractSocket::SocketError error);
    void OnTick();
    bool FromQueriedServer(const QHostAddress& sender, quint16 senderPort) const;

    QueryCycle& m_cycle;
    QueryView& m_view;
    QUdpSocket m_socket;
    QTimer m_timer;
    QHostAddress m_remoteHost;
    quint16 m_remotePort = 0;
    bool m_sending = false; // a refused send is reported by the round's trap, not as an error event
};

} // namespace tallybot::query
