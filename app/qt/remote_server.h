#pragma once
// The remote-control channel: a local socket in the home folder (or, for a very long path, in
// $XDG_RUNTIME_DIR), reachable by the same user only.
// Another `tallybot --send` (or a second instance) delivers one command to the running instance.

#include <functional>
#include <string>

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace tallybot::app {

class RemoteServer : public QObject {
    Q_OBJECT
public:
    using Handler = std::function<void(const std::string& command)>;

    explicit RemoteServer(Handler handler, QObject* parent = nullptr);

    // Listens on the channel of this home folder; false when another instance already listens.
    bool Listen(const QString& homeFolder);
    // Stops listening and drops what is still on its way: shutdown takes no more commands.
    void Close();
    // Delivers a command to the instance of that home folder; false when none listens.
    static bool Send(const QString& homeFolder, const std::string& command, int timeoutMs = 2000);
    // The socket's full path (a bare name only when neither place can hold it).
    static QString ChannelName(const QString& homeFolder);

private:
    void OnNewConnection();

    QLocalServer m_server;
    Handler m_handler;
};

} // namespace tallybot::app
