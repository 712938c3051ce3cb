#pragma once
// TLS for the IRC server socket: the client certificate and verification set up before an
// encrypted connect, and the decision on certificate errors. Verification (chain and host name)
// is on unless switched off; a pinned SHA-256 fingerprint accepts that one certificate whatever
// the errors, which is how a self-signed server certificate is trusted.

#include "irc/irc_extras_options.h"

#include <string>

#include <QList>
#include <QSslError>

class QSslSocket;

namespace tallybot::irc {

// Applies the client certificate and the verify mode; returns an error text for a certificate or
// key file that cannot be read (empty when all is well).
std::string ConfigureTls(QSslSocket& socket, const TlsOptions& tls);

// True when the handshake may go on despite these errors.
bool AcceptTlsErrors(const QSslSocket& socket, const QList<QSslError>& errors, const TlsOptions& tls);

// Lower-case hex SHA-256 of the peer's certificate, empty without one.
std::string PeerCertificateSha256(const QSslSocket& socket);

} // namespace tallybot::irc
