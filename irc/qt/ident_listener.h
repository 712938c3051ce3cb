#pragma once
// The ident responder's socket: listens on the configured port (113 normally, which needs privileges;
// a failure is reported at once as an error), numbers each incoming request by its socket descriptor,
// and on the core's answer stops listening, writes the reply to that request and closes it once the
// reply is flushed. Requests never answered are dropped on the answer or on Close().

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

namespace tallybot::irc {

class IdentListener {
public:
    struct Handlers {
        std::function<void(long, int)> request; // request id, own local port
        std::function<void(std::string_view)> data;
        std::function<void(int, const std::string&)> error;
    };

    explicit IdentListener(Handlers handlers);
    ~IdentListener();
    IdentListener(const IdentListener&) = delete;
    IdentListener& operator=(const IdentListener&) = delete;

    void Listen(int port);
    int State() const; // SocketState numbering
    void Answer(long requestId, std::string_view line);
    void Close();

private:
    void OnNewConnection();
    void DropPending();

    Handlers m_handlers;
    QTcpServer m_server;
    std::map<long, QPointer<QTcpSocket>> m_pending;
    bool m_inError = false;
};

} // namespace tallybot::irc
