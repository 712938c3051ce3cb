// tallybot-gamesim: a UDP game server that plays a scripted match for one engine and answers its
// status requests on 127.0.0.1, on the game port and on the query port after it.
//
//   tallybot-gamesim [--port PORT] [--script FILE] [--engine CODE]

#include "match_script.h"
#include "replies.h"

#include <cstdio>
#include <memory>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QNetworkDatagram>
#include <QUdpSocket>

namespace {

using tallybot::gamesim::MatchScript;

// The built-in match when no script is given: two players, a capture, a timeout, the end.
const char* const kDefaultScript = R"(engine Q3
host ^1Tally^7bot Test Server
map q3ctf1
gametype 4
gamename baseq3
timelimit 20
capturelimit 8
time 20:00
player Alice red 0 50
player Bob blue 0 70
at 5 time 15:00
at 5 score Alice 5
at 5 teamscore 1 0
at 10 time TIMEOUT RED
at 15 time 10:00
at 20 time INTERMISSION
)";

int Fail(const QString& message) {
    std::fprintf(stderr, "tallybot-gamesim: %s\n", message.toLocal8Bit().constData());
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("tallybot-gamesim");

    QCommandLineParser parser;
    parser.setApplicationDescription("Answers the status queries of one game engine from a scripted match.");
    parser.addHelpOption();
    parser.addOption({"port", "Game port on 127.0.0.1; the query port is the next one.", "PORT", "27960"});
    parser.addOption({"script", "Match script to play (see README.md).", "FILE"});
    parser.addOption({"engine", "Engine code (Q2, Q3, UT, HL, ..., D3); overrides the script.", "CODE"});
    parser.process(app);

    bool portOk = false;
    const int port = parser.value("port").toInt(&portOk);
    if (!portOk || port < 1 || port > 65534) return Fail("--port must be 1 to 65534");

    MatchScript script;
    try {
        std::string text = kDefaultScript;
        if (parser.isSet("script")) {
            QFile file(parser.value("script"));
            if (!file.open(QIODevice::ReadOnly)) return Fail("cannot read " + parser.value("script"));
            text = file.readAll().toStdString();
        }
        script = tallybot::gamesim::ParseScript(text);
        if (parser.isSet("engine")) {
            script.start.engineId = tallybot::gamesim::EngineIdOfCode(parser.value("engine").toStdString());
            if (script.start.engineId == 0) return Fail("unknown engine " + parser.value("engine"));
        }
    } catch (const tallybot::gamesim::ScriptError& e) {
        return Fail(QString::fromStdString(e.what()));
    }

    QUdpSocket gameSocket;
    QUdpSocket querySocket;
    if (!gameSocket.bind(QHostAddress::LocalHost, static_cast<quint16>(port)))
        return Fail("cannot bind port " + QString::number(port) + ": " + gameSocket.errorString());
    if (!querySocket.bind(QHostAddress::LocalHost, static_cast<quint16>(port + 1)))
        return Fail("cannot bind port " + QString::number(port + 1) + ": " + querySocket.errorString());

    QElapsedTimer clock;
    clock.start();
    const auto serve = [&](QUdpSocket& socket, bool onQueryPort) {
        while (socket.hasPendingDatagrams()) {
            const QNetworkDatagram request = socket.receiveDatagram(2048);
            const QByteArray bytes = request.data();
            const auto state = tallybot::gamesim::StateAt(script, static_cast<double>(clock.elapsed()) / 1000.0);
            const auto replies = tallybot::gamesim::RepliesTo(std::string_view(bytes.constData(), bytes.size()), state,
                                                              onQueryPort, port);
            for (const std::string& reply : replies)
                socket.writeDatagram(reply.data(), static_cast<qint64>(reply.size()), request.senderAddress(),
                                     static_cast<quint16>(request.senderPort()));
        }
    };
    QObject::connect(&gameSocket, &QUdpSocket::readyRead, [&] { serve(gameSocket, false); });
    QObject::connect(&querySocket, &QUdpSocket::readyRead, [&] { serve(querySocket, true); });

    std::printf("tallybot-gamesim listening on 127.0.0.1:%d and %d\n", port, port + 1);
    std::fflush(stdout);
    return app.exec();
}
