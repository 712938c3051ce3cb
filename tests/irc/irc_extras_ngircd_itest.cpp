// The "Extras" additions against a real ngircd on 127.0.0.1: TLS with a throwaway self-signed
// certificate (accepted when pinned, refused when untrusted), reconnect after the server went away,
// a twelve-line post under paced sending, and UTF-8 text both ways.

#include "tests/irc/irc_under_test.h"
#include "tests/support/irc_test_client.h"
#include "tests/support/ngircd_server.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QSslCertificate>
#include <QSslSocket>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tallybot::irc::itest {
namespace {

using namespace std::chrono_literals;
using testsupport::IrcTestClient;
using testsupport::NgircdServer;

class ExtrasNgircd : public ::testing::Test {
protected:
    void SetUp() override {
        if (!NgircdServer::Available()) GTEST_SKIP() << "ngircd is not installed";
    }

    void StartServer(NgircdServer::Options options = {}) {
        server = std::make_unique<NgircdServer>(std::move(options));
        ASSERT_TRUE(server->Start()) << server->Log();
        ASSERT_TRUE(alice.Connect(server->Host(), server->Port())) << server->Log();
        ASSERT_TRUE(alice.Register()) << alice.Transcript();
        ASSERT_TRUE(alice.Join("#tally")) << alice.Transcript();
    }

    void Join(std::uint16_t port) {
        irc.ConnectTo("127.0.0.1", port);
        ASSERT_TRUE(irc.WaitForStatus(kJoined)) << irc.PaneText();
        ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+@\S+ JOIN :?#tally$)")) << alice.Transcript();
    }

    std::unique_ptr<NgircdServer> server;
    IrcTestClient alice{"alice"};
    IrcUnderTest irc;
};

// A throwaway self-signed certificate for "irc.test.local" and ngircd's [SSL] section on a second port.
struct TlsServerFiles {
    QTemporaryDir dir;
    std::string cert, key, sha256;
    std::uint16_t port = testsupport::FreeLoopbackPort();

    bool Make() {
        cert = dir.filePath("cert.pem").toStdString();
        key = dir.filePath("key.pem").toStdString();
        QProcess openssl;
        openssl.start("openssl",
                      {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1", "-subj", "/CN=irc.test.local",
                       "-keyout", QString::fromStdString(key), "-out", QString::fromStdString(cert)});
        if (!openssl.waitForFinished(30000) || openssl.exitCode() != 0) return false;
        const auto certs = QSslCertificate::fromPath(QString::fromStdString(cert));
        if (certs.isEmpty()) return false;
        // Written with colons and upper case, as a fingerprint is usually copied.
        sha256 = certs.front().digest(QCryptographicHash::Sha256).toHex(':').toUpper().toStdString();
        return true;
    }
    std::vector<std::string> Config() const {
        return {"[SSL]", "CertFile = " + cert, "KeyFile = " + key, "Ports = " + std::to_string(port)};
    }
};

bool TlsAvailable() {
    return QSslSocket::supportsSsl() && !QStandardPaths::findExecutable("openssl").isEmpty();
}

TEST_F(ExtrasNgircd, TlsWithPinnedSelfSignedCertificateJoins) {
    if (!TlsAvailable()) GTEST_SKIP() << "no TLS backend or openssl";
    TlsServerFiles tls;
    ASSERT_TRUE(tls.Make());
    NgircdServer::Options options;
    options.extraLines = tls.Config();
    StartServer(options);
    irc.extras.IrcTls = 1;
    irc.extras.IrcTlsPinSha256 = tls.sha256;
    Join(tls.port);
    irc.core.SendToChannel("over TLS");
    const auto got = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" PRIVMSG")), " PRIVMSG #tally :over TLS");
}

TEST_F(ExtrasNgircd, TlsRefusesAnUntrustedCertificate) {
    if (!TlsAvailable()) GTEST_SKIP() << "no TLS backend or openssl";
    TlsServerFiles tls;
    ASSERT_TRUE(tls.Make());
    NgircdServer::Options options;
    options.extraLines = tls.Config();
    StartServer(options);
    irc.extras.IrcTls = 1; // verification on by default, no pin
    irc.ConnectTo("127.0.0.1", tls.port);
    ASSERT_TRUE(irc.WaitForPaneMatch(R"(^\[IRC\] SERVER Error #\d+: )")) << irc.PaneText();
    EXPECT_EQ(irc.disconnectedEvents, 1);
    EXPECT_EQ(irc.statuses, std::vector<int>{kConnectRequested});
    EXPECT_EQ(irc.CountPane("*** Tallybot has joined #tally"), 0);
}

TEST_F(ExtrasNgircd, ReconnectsAfterTheServerCameBackAndRejoins) {
    StartServer();
    irc.extras.AutoReconnect = 1;
    Join(server->Port());
    server->Stop();
    ASSERT_TRUE(irc.WaitForPane("*** Reconnecting in 10 seconds")) << irc.PaneText();
    // The server comes back (on a new free port, which the next attempt uses).
    ASSERT_TRUE(server->Start()) << server->Log();
    irc.core.Properties().ServerPort = server->Port();
    ASSERT_TRUE(testsupport::WaitUntil([&] { return irc.CountPane("*** Tallybot has joined #tally") == 2; }, 30s))
        << irc.PaneText();
    EXPECT_EQ(irc.core.ConnectStatus(), kJoined);
    EXPECT_EQ(irc.disconnectedEvents, 0);
    EXPECT_EQ(irc.statuses, (std::vector<int>{kConnectRequested, kJoinSent, kJoined, kJoinSent, kJoined}));
}

TEST_F(ExtrasNgircd, TwelveLinePostIsPacedWithoutAFloodDisconnect) {
    StartServer();
    irc.extras.PacedSending = 1;
    Join(server->Port());
    for (int n = 1; n <= 12; ++n)
        irc.core.SendToChannel("Red 3 : Blue " + std::to_string(n));
    for (int n = 1; n <= 12; ++n) {
        const auto got = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :)", 30s);
        ASSERT_TRUE(got) << "line " << n << "\n" << alice.Transcript() << irc.PaneText();
        EXPECT_EQ(got->substr(got->find(" :") + 2), "Red 3 : Blue " + std::to_string(n));
    }
    EXPECT_EQ(irc.core.ConnectStatus(), kJoined) << irc.PaneText();
    EXPECT_EQ(irc.disconnectedEvents, 0);
}

TEST_F(ExtrasNgircd, Utf8TextArrivesIntactBothWays) {
    StartServer();
    irc.extras.IrcEncoding = "UTF-8";
    Join(server->Port());
    alice.Say("#tally", "J\xC3\xB6rg \xE2\x82\xAC");
    EXPECT_TRUE(irc.WaitForPane("<alice> J\xF6rg \x80")) << irc.PaneText();
    irc.core.SendToChannel("Top: J\xF6rg, \xE5\xBC\xA0\xE4\xB8\x89");
    const auto got = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #tally :)");
    ASSERT_TRUE(got) << alice.Transcript();
    EXPECT_EQ(got->substr(got->find(" :") + 2), "Top: J\xC3\xB6rg, \xE5\xBC\xA0\xE4\xB8\x89");
}

} // namespace
} // namespace tallybot::irc::itest
