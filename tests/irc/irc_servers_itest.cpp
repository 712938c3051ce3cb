// The IRC control as the program runs it (the core, the session and the Qt sockets) against servers
// on 127.0.0.1: a scripted one for what real servers do not send, ngircd and InspIRCd (skipped when
// not installed). A session's lines, as the server or a second user received them, are compared byte
// for byte with tests/data/irc/sessions/<name>.txt; TALLYBOT_WRITE_EXPECTED=1 rewrites the file.

#include "base/extras_settings.h"
#include "irc/irc_extras_options.h"
#include "irc/qt/irc_session_sockets.h"
#include "irc/qt/qt_irc_clock.h"
#include "irc/usc_irc.h"
#include "tests/support/fixture_file.h"
#include "tests/support/irc_daemon.h"
#include "tests/support/irc_peers.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include <QCryptographicHash>
#include <QHostInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSslCertificate>
#include <QSslSocket>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using namespace std::chrono_literals;
using namespace testsupport;

// The control with Qt sockets; the session reads `extras` at each connect.
struct Control {
    base::ExtrasSettings extras;
    QtIrcClock clock;
    IrcSessionSockets sockets{clock};
    uscIRC core{sockets.Transport(), clock};
    std::vector<int> statuses;
    int disconnects = 0;
    std::vector<std::string> commands; // "text|nick|user"

    explicit Control(const std::string& nick = "Tallybot") {
        sockets.Attach(&core, [this] { return ExtrasOptionsFrom(extras); });
        core.Properties().Ident = false;
        core.Properties().Nick = nick;
        core.SetChannelName("#tally");
        core.Events().StatusChange = [this] { statuses.push_back(core.ConnectStatus()); };
        core.Events().Disconnected = [this] { ++disconnects; };
        core.Events().UserCommand = [this](const std::string& t, const std::string& n, const std::string& u) {
            commands.push_back(t + "|" + n + "|" + u);
        };
    }
    ~Control() { sockets.Attach(nullptr, {}); }

    void ConnectTo(const std::string& host, int port) {
        core.Properties().ServerAddress = host;
        core.Properties().ServerPort = port;
        core.Connect();
    }
    bool WaitForStatus(int status, std::chrono::milliseconds deadline = kDefaultDeadline) {
        return WaitUntil([&] { return core.ConnectStatus() == status; }, deadline);
    }
    int CountPane(const std::string& pattern) const {
        const QRegularExpression re(QString::fromLatin1(pattern.data(), static_cast<qsizetype>(pattern.size())));
        int n = 0;
        for (const PaneLine& line : core.PaneLines())
            n += re.match(QString::fromLatin1(line.PlainText())).hasMatch() ? 1 : 0;
        return n;
    }
    bool WaitForPane(const std::string& pattern, std::chrono::milliseconds deadline = kDefaultDeadline) {
        return WaitUntil([&] { return CountPane(pattern) > 0; }, deadline);
    }
    std::string PaneText() const {
        std::string text;
        for (const PaneLine& line : core.PaneLines())
            text += line.PlainText() + "\n";
        return text;
    }
};

// The lines with the given words put back as their names and bytes outside printable ASCII as \xHH.
void ExpectTranscript(const std::string& name, const std::vector<std::string>& lines,
                      const std::map<std::string, std::string>& names) {
    std::string text;
    for (const std::string& line : lines) {
        std::string named;
        std::istringstream words(line);
        for (std::string word; std::getline(words, word, ' ');) {
            for (const auto& [key, value] : names)
                if (word == value) word = key;
            named += (named.empty() ? "" : " ") + word;
        }
        for (unsigned char c : named) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            text += c < 0x20 || c > 0x7E || c == '\\' ? std::string(hex) : std::string(1, static_cast<char>(c));
        }
        text += "\n";
    }
    const auto file = test::SourceRoot() / "tests/data/irc/sessions" / (name + ".txt");
    if (std::getenv("TALLYBOT_WRITE_EXPECTED")) {
        std::ofstream(file, std::ios::binary) << text;
        return;
    }
    EXPECT_EQ(text, test::ReadFixture("irc/sessions/" + name + ".txt"));
}

// A whole session against the scripted server: a host name looked up, ident, SASL, a registration
// that ends in 422 and then 376, a MOTD big enough to arrive in pieces, a CTCP flood under paced
// sending, and an ERROR line.
TEST(IrcFakeServer, OneSessionFromIdentAndSaslToTheErrorLine) {
    FakeIrcServer fake;
    ASSERT_TRUE(fake.Listen());
    Control irc;
    irc.core.SetServerPassword("s3cret");
    irc.extras.SaslMechanism = "PLAIN";
    irc.extras.SaslUser = "tally";
    irc.extras.SaslPassword = "s3cret";
    irc.extras.PacedSending = 1;
    const std::uint16_t identPort = FreeLoopbackPort();
    irc.core.Properties().Ident = true;
    irc.core.Properties().IdentPort = identPort;
    irc.ConnectTo("localhost", fake.Port());
    ASSERT_TRUE(fake.WaitForClient());
    ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$")) << fake.Received().Transcript();

    IrcTestClient asker("ident");
    ASSERT_TRUE(asker.Connect("127.0.0.1", identPort));
    asker.Send(std::to_string(fake.Port()) + ", 50000");
    const auto reply = asker.WaitForLine(".");
    ASSERT_TRUE(reply);
    EXPECT_TRUE(QRegularExpression(QString("^%1, \\d+:USERID:WIN32:kavik$").arg(identPort))
                    .match(QString::fromStdString(*reply))
                    .hasMatch())
        << *reply;
    EXPECT_TRUE(asker.WaitForClose());
    IrcTestClient late("late");
    EXPECT_FALSE(late.Connect("127.0.0.1", identPort)); // the first request only

    const auto exchange = [&](const std::string& line, const std::string& answer) {
        fake.WriteLine(line);
        ASSERT_TRUE(fake.WaitForLine(answer, 30s)) << fake.Received().Transcript();
    };
    exchange(":irc.fake CAP * LS :multi-prefix sasl", "^CAP REQ :sasl$");
    exchange(":irc.fake CAP * ACK :sasl", "^AUTHENTICATE PLAIN$");
    exchange("AUTHENTICATE +", "^AUTHENTICATE ");
    exchange(":irc.fake 903 Tallybot :SASL authentication successful", "^CAP END$");
    fake.WriteLine(":irc.fake 001 Tallybot :Welcome");
    fake.WriteLine(":irc.fake 422 Tallybot :MOTD File is missing");
    exchange("PING :after422", "^PONG :after422$"); // all before it was handled: no JOIN yet
    EXPECT_FALSE(fake.Received().Pending("^JOIN")) << fake.Received().Transcript();
    std::string motd;
    for (int i = 0; i < 300; ++i)
        motd += ":irc.fake 372 Tallybot :- motd line " + std::to_string(i) + " of the burst\r\n";
    fake.Write(motd + ":irc.fake 376 Tallybot :End of MOTD command\r\n");
    ASSERT_TRUE(fake.WaitForLine("^JOIN #tally$", 30s)) << fake.Received().Transcript();
    EXPECT_EQ(irc.CountPane("^- motd line \\d+ of the burst$"), 300) << irc.PaneText();
    fake.WriteLine(":Tallybot!tb@host.example JOIN :#tally");
    ASSERT_TRUE(irc.WaitForStatus(kJoined)) << irc.PaneText();
    EXPECT_EQ(irc.core.OwnHost(), "host.example");

    std::string flood;
    for (int n = 0; n < 12; ++n)
        flood += ":mallory!m@evil PRIVMSG Tallybot :\x01VERSION\x01\r\n";
    fake.Write(flood + ":bob!~b@host.example PRIVMSG #tally :!info\r\n");
    ASSERT_TRUE(irc.WaitForPane("^<bob> !info$")) << irc.PaneText();
    irc.core.SendToChannel("marker"); // queued behind the answers
    ASSERT_TRUE(fake.WaitForLine("^PRIVMSG #tally :marker$", 30s)) << fake.Received().Transcript();
    EXPECT_EQ(irc.commands, std::vector<std::string>{"!info|bob|~b"});
    exchange("ERROR :Closing Link: 127.0.0.1 (Bad password)", "^QUIT ");
    EXPECT_EQ(irc.disconnects, 1);
    fake.CloseClient();
    ASSERT_TRUE(irc.WaitForStatus(kNotConnected)) << irc.PaneText();
    EXPECT_EQ(irc.core.PaneLines().back().PlainText(), "*** Disconnected");
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined}));
    ExpectTranscript("fake_server", fake.Received().Lines(), {{"{host}", QHostInfo::localHostName().toStdString()}});
}

TEST(IrcSocketErrors, RefusedConnectionBadPortAndTakenIdentPortAreShown) {
    Control refused, badPort, identTaken;
    refused.ConnectTo("127.0.0.1", FreeLoopbackPort());
    badPort.ConnectTo("127.0.0.1", 70000);
    QTcpServer squatter;
    ASSERT_TRUE(squatter.listen(QHostAddress::Any, 0));
    FakeIrcServer fake;
    ASSERT_TRUE(fake.Listen());
    identTaken.core.Properties().Ident = true;
    identTaken.core.Properties().IdentPort = squatter.serverPort();
    identTaken.ConnectTo("127.0.0.1", fake.Port());
    ASSERT_TRUE(fake.WaitForLine("^NICK Tallybot$")) << identTaken.PaneText(); // registration went on
    EXPECT_EQ(identTaken.CountPane(R"(^\[IRC\] IDENT Error #10048: The bound address is already in use$)"), 1)
        << identTaken.PaneText();
    ASSERT_TRUE(refused.WaitForPane(R"(^\[IRC\] SERVER Error #10061: )")) << refused.PaneText();
    ASSERT_TRUE(badPort.WaitForPane(R"(^\[IRC\] SERVER Error #10049: )")) << badPort.PaneText();
    EXPECT_EQ(refused.disconnects + badPort.disconnects, 2);
    EXPECT_EQ(refused.sockets.Sockets().ServerState(), kSockError);
}

// ngircd without a MOTD file (registration ends with 422) and alice, the channel's operator.
class Ngircd : public ::testing::Test {
protected:
    void SetUp() override {
        if (!NgircdServer::Available()) GTEST_SKIP() << "ngircd is not installed";
    }
    void Start(std::vector<std::string> extraLines = {}) {
        server = std::make_unique<NgircdServer>(NgircdServer::Options{"", std::move(extraLines)});
        ASSERT_TRUE(server->Start()) << server->Log();
        ASSERT_TRUE(alice.Connect(server->Host(), server->Port())) << server->Log();
        ASSERT_TRUE(alice.Register()) << alice.Transcript();
        ASSERT_TRUE(alice.Join("#tally")) << alice.Transcript();
    }
    void Join(Control& irc, std::uint16_t port) {
        irc.extras.JoinAfter422 = 1;
        irc.ConnectTo("127.0.0.1", port);
        ASSERT_TRUE(irc.WaitForStatus(kJoined)) << irc.PaneText();
        ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot\S* JOIN :?#tally$)")) << alice.Transcript();
    }
    // alice's lines from the control, up to its QUIT.
    std::vector<std::string> FromTallybot() {
        EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ QUIT )")) << alice.Transcript();
        std::vector<std::string> lines;
        for (const std::string& line : alice.Lines())
            if (line.rfind(":Tallybot!", 0) == 0) lines.push_back(line);
        return lines;
    }

    std::unique_ptr<NgircdServer> server;
    IrcTestClient alice{"alice"};
};

// One session from the JOIN to the QUIT, in UTF-8 and paced: channel text and commands, CTCP,
// notices both ways, a twelve-line post without a flood disconnect, and a kick with a rejoin.
TEST_F(Ngircd, OneSessionFromJoinToQuit) {
    Start();
    Control irc;
    irc.extras.IrcEncoding = "UTF-8";
    irc.extras.PacedSending = 1;
    Join(irc, server->Port());
    const UserEntry* entry = irc.core.Users().Find("alice");
    ASSERT_NE(entry, nullptr) << irc.PaneText();
    EXPECT_EQ(entry->Mark, "@");
    alice.Say("#tally", "!info x");
    alice.Say("#tally", "J\xC3\xB6rg \xE2\x82\xAC");
    ASSERT_TRUE(irc.WaitForPane("^<alice> J\xF6rg \x80$")) << irc.PaneText();
    EXPECT_EQ(irc.commands, std::vector<std::string>{"!info x|alice|~alice"});
    alice.Say("Tallybot", "\x01VERSION\x01");
    alice.Notice("Tallybot", "thanks");
    ASSERT_TRUE(irc.WaitForPane("^-alice- thanks$")) << irc.PaneText();
    irc.core.NotifyUser("alice", "score is 3:1");
    irc.core.SendToChannel("Top: J\xF6rg, \xE5\xBC\xA0\xE4\xB8\x89");
    for (int n = 1; n <= 12; ++n)
        irc.core.SendToChannel("Red 3 : Blue " + std::to_string(n));
    ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :Red 3 : Blue 12$)", 40s)) << alice.Transcript();
    alice.Send("KICK #tally Tallybot :too many posts");
    ASSERT_TRUE(irc.WaitForPane(R"(^\*\*\* Attempting to rejoin #tally\.\.\.$)")) << irc.PaneText();
    ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ JOIN :?#tally$)")) << alice.Transcript();
    EXPECT_EQ(irc.disconnects, 0);
    irc.core.Disconnect("good bye");
    EXPECT_EQ(irc.disconnects, 1);
    ASSERT_TRUE(irc.WaitForStatus(kNotConnected)) << irc.PaneText(); // after the server's ERROR line
    EXPECT_EQ(irc.CountPane(R"(^\*\*\* Disconnected$)"), 1) << irc.PaneText();
    ExpectTranscript("ngircd", FromTallybot(), {});
}

// The server goes away: the classic control ends its session, the one with AutoReconnect comes
// back and rejoins once the server is there again (on a new port, which the next attempt uses).
TEST_F(Ngircd, ServerRestartEndsOneSessionAndIsReconnectedByTheOther) {
    Start();
    Control classic, again("Tallybot2");
    again.extras.AutoReconnect = 1;
    Join(classic, server->Port());
    Join(again, server->Port());
    server->Stop();
    ASSERT_TRUE(classic.WaitForStatus(kNotConnected)) << classic.PaneText();
    EXPECT_EQ(classic.CountPane(R"(^\*\*\* Disconnected$)"), 1) << classic.PaneText();
    ASSERT_TRUE(again.WaitForPane(R"(^\*\*\* Reconnecting in 10 seconds$)")) << again.PaneText();
    ASSERT_TRUE(server->Start()) << server->Log();
    again.core.Properties().ServerPort = server->Port();
    ASSERT_TRUE(WaitUntil([&] { return again.CountPane(R"(^\*\*\* Tallybot2 has joined #tally$)") == 2; }, 30s))
        << again.PaneText();
    EXPECT_EQ(again.disconnects, 0);
    EXPECT_EQ(again.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined, kJoinSent, kJoined}));
}

// TLS with a throwaway self-signed certificate: joined when pinned, refused when not trusted.
TEST_F(Ngircd, TlsJoinsWithAPinnedCertificateAndRefusesAnUntrustedOne) {
    if (!QSslSocket::supportsSsl() || QStandardPaths::findExecutable("openssl").isEmpty())
        GTEST_SKIP() << "no TLS backend or openssl";
    QTemporaryDir dir;
    const QString cert = dir.filePath("cert.pem"), key = dir.filePath("key.pem");
    QProcess openssl;
    openssl.start("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1", "-subj",
                              "/CN=irc.test.local", "-keyout", key, "-out", cert});
    ASSERT_TRUE(openssl.waitForFinished(30000) && openssl.exitCode() == 0);
    const auto certs = QSslCertificate::fromPath(cert);
    ASSERT_FALSE(certs.isEmpty());
    const std::uint16_t port = FreeLoopbackPort();
    Start({"[SSL]", "CertFile = " + cert.toStdString(), "KeyFile = " + key.toStdString(),
           "Ports = " + std::to_string(port)});
    Control pinned, untrusted("Tallybot2");
    pinned.extras.IrcTls = untrusted.extras.IrcTls = 1;
    // Written with colons and upper case, as a fingerprint is usually copied.
    pinned.extras.IrcTlsPinSha256 = certs.front().digest(QCryptographicHash::Sha256).toHex(':').toUpper().toStdString();
    Join(pinned, port);
    untrusted.ConnectTo("127.0.0.1", port);
    ASSERT_TRUE(untrusted.WaitForPane(R"(^\[IRC\] SERVER Error #\d+: )")) << untrusted.PaneText();
    EXPECT_EQ(untrusted.statuses, std::vector<int>{kConnectRequested});
    pinned.core.SendToChannel("over TLS");
    EXPECT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :over TLS$)")) << alice.Transcript();
}

// InspIRCd checks user names: the classic mail address gets a 468, shown with ShowErrorNumerics;
// UserFromIdent's name is accepted.
TEST(Inspircd, RefusesTheMailAddressAndTheRefusalIsShown) {
    if (!InspircdServer::Available()) GTEST_SKIP() << "inspircd is not installed";
    InspircdServer server;
    ASSERT_TRUE(server.Start()) << server.Log();
    Control refused, accepted("Tallybot2");
    refused.extras.ShowErrorNumerics = 1;
    accepted.extras.ShowErrorNumerics = accepted.extras.UserFromIdent = 1;
    refused.ConnectTo(server.Host(), server.Port());
    accepted.ConnectTo(server.Host(), server.Port());
    ASSERT_TRUE(refused.WaitForPane("^Your username is not valid$")) << refused.PaneText() << server.Log();
    EXPECT_EQ(refused.core.PaneLines().back().Runs.front().Foreground, 255); // ErrorColor
    ASSERT_TRUE(accepted.WaitForStatus(kJoined)) << accepted.PaneText() << server.Log();
    EXPECT_EQ(accepted.CountPane("Your username is not valid"), 0) << accepted.PaneText();
    EXPECT_EQ(refused.core.ConnectStatus(), kConnectRequested);
}

} // namespace
} // namespace tallybot::irc
