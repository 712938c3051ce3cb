#include "irc/irc_extras_options.h"

#include "base/extras_settings.h"

#include <cctype>

namespace tallybot::irc {

std::string NormalizePin(std::string_view text) {
    std::string hex;
    for (char c : text) {
        if (c == ':' || c == ' ') continue;
        if (!std::isxdigit(static_cast<unsigned char>(c))) return {};
        hex += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return hex.size() == 64 ? hex : std::string();
}

ServerCompat ServerCompatOf(const base::ExtrasSettings& extras) {
    return {extras.UserFromIdent == 1, extras.ShowErrorNumerics == 1, extras.JoinAfter422 == 1,
            extras.TrailingAfterPrefix == 1, extras.NickFrom001 == 1};
}

IrcExtrasOptions ExtrasOptionsFrom(const base::ExtrasSettings& extras) {
    IrcExtrasOptions o;
    o.Tls.Enabled = extras.IrcTls == 1;
    o.Tls.Verify = extras.IrcTlsVerify == 1;
    o.Tls.PinSha256 = NormalizePin(extras.IrcTlsPinSha256);
    o.Tls.CertFile = extras.ClientCertFile;
    o.Tls.KeyFile = extras.ClientKeyFile;
    o.Sasl = SaslSettings{extras.SaslMechanism, extras.SaslUser, extras.SaslPassword};
    o.AutoReconnect = extras.AutoReconnect == 1;
    o.PacedSending = extras.PacedSending == 1;
    o.Encoding = ParseIrcEncoding(extras.IrcEncoding);
    o.Compat = ServerCompatOf(extras);
    return o;
}

} // namespace tallybot::irc
