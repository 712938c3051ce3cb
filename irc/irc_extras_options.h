#pragma once
// The "Extras" switches that concern the IRC connection, as one value the session and the socket
// adapter read at each connect. Built from the settings record by ExtrasOptionsFrom; the
// defaults keep the classic behaviour.

#include "irc/irc_text_codec.h"
#include "irc/sasl_exchange.h"
#include "irc/server_compat.h"

#include <string>
#include <string_view>

namespace tallybot::base {
struct ExtrasSettings;
}

namespace tallybot::irc {

struct TlsOptions {
    bool Enabled = false;
    bool Verify = true;    // chain of trust and host name
    std::string PinSha256; // lower-case hex without separators; empty: no pin
    std::string CertFile;  // PEM client certificate (SASL EXTERNAL), empty: none
    std::string KeyFile;   // PEM key of that certificate
    bool operator==(const TlsOptions&) const = default;
};

struct IrcExtrasOptions {
    TlsOptions Tls;
    SaslSettings Sasl;
    bool AutoReconnect = false;
    bool PacedSending = false;
    IrcEncoding Encoding = IrcEncoding::Latin1;
    ServerCompat Compat; // handed to the control at each connect
    bool operator==(const IrcExtrasOptions&) const = default;
};

// "AB:cd:01..." or "abcd01..." as lower-case hex without separators; empty when it is not 64 hex digits.
std::string NormalizePin(std::string_view text);

IrcExtrasOptions ExtrasOptionsFrom(const base::ExtrasSettings& extras);

} // namespace tallybot::irc
