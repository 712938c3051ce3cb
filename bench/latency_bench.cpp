// In-process latency from a game reply's arrival to the channel line on the IRC socket: a real
// datagram from a loopback game server goes through the real runtime (UDP socket, query cycle, Q3
// parser, capture detection, template expansion, IRC core, TCP socket) into a loopback IRC server
// that reads the PRIVMSG. Every reply raises the red score, so every reply is a capture post.
// Reports the median and 99th percentile as counters p50_us and p99_us.

#include "app/command_line.h"
#include "app/qt/app_runtime.h"
#include "app/qt/headless_runner.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkDatagram>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <QUdpSocket>

#include <benchmark/benchmark.h>

namespace {

using namespace tallybot;

// Just enough of an IRC server: welcome and end of MOTD after USER, the JOIN echoed, and the
// moment each channel line arrives.
class LoopbackIrcServer : public QObject {
public:
    LoopbackIrcServer() {
        m_clock.start();
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_client = m_server.nextPendingConnection();
            m_client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            connect(m_client, &QTcpSocket::readyRead, this, [this] { OnRead(); });
        });
    }
    quint16 Port() const { return m_server.serverPort(); }
    bool Joined() const { return m_joined; }
    long ChannelLines() const { return m_channelLines; }
    qint64 LastLineAt() const { return m_lastLineAt; }
    qint64 Now() const { return m_clock.nsecsElapsed(); }

private:
    void OnRead() {
        m_pending += m_client->readAll().toStdString();
        for (auto end = m_pending.find("\r\n"); end != std::string::npos; end = m_pending.find("\r\n")) {
            const std::string line = m_pending.substr(0, end);
            m_pending.erase(0, end + 2);
            if (line.starts_with("USER "))
                m_client->write(":irc.bench 001 Tallybot :Welcome\r\n:irc.bench 376 Tallybot :End of MOTD\r\n");
            else if (line.starts_with("JOIN ")) {
                m_client->write(":Tallybot!bot@127.0.0.1 JOIN :#bench\r\n");
                m_joined = true;
            } else if (line.starts_with("PRIVMSG #bench ")) {
                m_lastLineAt = m_clock.nsecsElapsed();
                ++m_channelLines;
            } else if (line.starts_with("QUIT"))
                m_client->disconnectFromHost();
        }
    }

    QElapsedTimer m_clock;
    QTcpServer m_server;
    QTcpSocket* m_client = nullptr;
    std::string m_pending;
    bool m_joined = false;
    long m_channelLines = 0;
    qint64 m_lastLineAt = 0;
};

std::string Q3Reply(int redScore) {
    std::string reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\sv_hostname\\^1Bench ^4Arena\\mapname\\q3wctf1"
                        "\\g_gametype\\4\\gamename\\baseq3\\timelimit\\20\\capturelimit\\1000\\version\\Q3 1.32c linux-i386"
                        "\\score_red\\" +
                        std::to_string(redScore) + "\\score_blue\\0\\score_time\\12:15\n";
    for (int i = 0; i < 16; ++i)
        reply += std::to_string(i == 0 ? 5 * redScore : i) + " " + std::to_string(40 + i) + " \"^" +
                 std::to_string(i % 8) + "Player" + std::to_string(i) + "\"\n";
    return reply;
}

struct Rig {
    Rig() {
        m_game.bind(QHostAddress::LocalHost, 0);
        QObject::connect(&m_game, &QUdpSocket::readyRead, [this] {
            while (m_game.hasPendingDatagrams()) {
                const QNetworkDatagram request = m_game.receiveDatagram();
                m_botPort = request.senderPort(); // the bot's query socket
            }
        });
        const std::string home = m_home.path().toStdString();
        std::ofstream(home + "/Tallybot.ini")
            << "[IRC]\r\n1Server=127.0.0.1\r\n1Port=" << m_irc.Port()
            << "\r\n1Channel=#bench\r\n1Nick=Tallybot\r\n[Game]\r\n1Host=127.0.0.1:" << m_game.localPort()
            << "\r\nQueryTime=1000\r\n[Extras]\r\nIdentEnabled=0\r\n";
        const auto profiles = std::filesystem::path(TALLYBOT_SOURCE_ROOT) / "profiles" / "default";
        app::StartupOptions options;
        options.home = app::PrepareHomeFolder(home, {profiles.string()});
        m_runtime.Start(options);
        m_headless.Start("");
        ok = WaitFor([this] { return m_irc.Joined() && m_botPort != 0; }, 5000);
        // Detection, then the clock settles the match as running: the posts start after that.
        for (int i = 0; i < 5 && ok; ++i)
            Reply(200);
        ok = ok && m_irc.ChannelLines() > 0;
    }

    // Sends the next reply and waits for its channel line; returns nanoseconds, or -1.
    qint64 Reply(int timeoutMs = 1000) {
        const std::string datagram = Q3Reply(++m_redScore);
        const long before = m_irc.ChannelLines();
        const qint64 sentAt = m_irc.Now();
        m_game.writeDatagram(datagram.data(), static_cast<qint64>(datagram.size()), QHostAddress::LocalHost, m_botPort);
        if (!WaitFor([&] { return m_irc.ChannelLines() > before; }, timeoutMs)) return -1;
        return m_irc.LastLineAt() - sentAt;
    }

    template <typename Done> bool WaitFor(Done done, int timeoutMs) {
        QElapsedTimer waited;
        waited.start();
        while (!done()) {
            if (waited.elapsed() > timeoutMs) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return true;
    }

    QTemporaryDir m_home;
    LoopbackIrcServer m_irc;
    QUdpSocket m_game;
    quint16 m_botPort = 0;
    int m_redScore = 0;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_paneOut{std::fopen("/dev/null", "w"), &std::fclose};
    app::AppRuntime m_runtime;
    app::HeadlessRunner m_headless{m_runtime, app::OutputStyle::Plain, m_paneOut.get()};
    bool ok = true;
};

double Percentile(std::vector<qint64> samples, double fraction) {
    if (samples.empty()) return 0;
    const auto at = static_cast<std::size_t>(fraction * static_cast<double>(samples.size() - 1));
    std::nth_element(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(at), samples.end());
    return static_cast<double>(samples[at]) / 1000.0;
}

void DatagramToChannelLine(benchmark::State& state, Rig& rig) {
    if (!rig.ok) {
        state.SkipWithError("the bot did not post to the loopback channel");
        return;
    }
    std::vector<qint64> samples;
    for (auto _ : state) {
        const qint64 ns = rig.Reply();
        if (ns < 0) {
            state.SkipWithError("no channel line for a reply");
            return;
        }
        samples.push_back(ns);
        state.SetIterationTime(static_cast<double>(ns) / 1e9);
    }
    state.counters["p50_us"] = Percentile(samples, 0.50);
    state.counters["p99_us"] = Percentile(samples, 0.99);
    state.SetItemsProcessed(state.iterations());
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // One bot for every run: the IRC session and the detected engine carry over.
    Rig rig;
    benchmark::RegisterBenchmark("BM_DatagramToChannelLine", [&rig](benchmark::State& state) {
        DatagramToChannelLine(state, rig);
    })->UseManualTime();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
