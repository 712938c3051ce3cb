#include "irc/qt/tls_setup.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>

namespace tallybot::irc {

namespace {

QString Path(const std::string& path) {
    return QString::fromLocal8Bit(path.data(), static_cast<qsizetype>(path.size()));
}

} // namespace

std::string ConfigureTls(QSslSocket& socket, const TlsOptions& tls) {
    QSslConfiguration config = QSslConfiguration::defaultConfiguration();
    // With a pin the errors are judged in AcceptTlsErrors; the handshake must still report them.
    config.setPeerVerifyMode(tls.Verify || !tls.PinSha256.empty() ? QSslSocket::VerifyPeer : QSslSocket::QueryPeer);
    std::string problem;
    if (!tls.CertFile.empty()) {
        const QList<QSslCertificate> certs = QSslCertificate::fromPath(Path(tls.CertFile), QSsl::Pem);
        if (certs.isEmpty()) {
            problem = "cannot read the client certificate " + tls.CertFile;
        } else {
            config.setLocalCertificate(certs.front());
            QFile keyFile(Path(tls.KeyFile.empty() ? tls.CertFile : tls.KeyFile));
            QSslKey key;
            if (keyFile.open(QIODevice::ReadOnly)) key = QSslKey(&keyFile, QSsl::Rsa, QSsl::Pem);
            if (key.isNull() && keyFile.seek(0)) key = QSslKey(&keyFile, QSsl::Ec, QSsl::Pem);
            if (key.isNull()) {
                problem = "cannot read the client key " + (tls.KeyFile.empty() ? tls.CertFile : tls.KeyFile);
            } else {
                config.setPrivateKey(key);
            }
        }
    }
    socket.setSslConfiguration(config);
    return problem;
}

std::string PeerCertificateSha256(const QSslSocket& socket) {
    const QSslCertificate cert = socket.peerCertificate();
    if (cert.isNull()) return {};
    return cert.digest(QCryptographicHash::Sha256).toHex().toStdString();
}

bool AcceptTlsErrors(const QSslSocket& socket, const QList<QSslError>& errors, const TlsOptions& tls) {
    if (!tls.PinSha256.empty() && PeerCertificateSha256(socket) == tls.PinSha256) return true;
    return !tls.Verify || errors.isEmpty();
}

} // namespace tallybot::irc
