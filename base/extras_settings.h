#pragma once
// Settings beyond the classic ones, stored in section "Extras" after the classic sections. Every
// default leaves the classic behaviour as it was; docs/settings.md describes each key.

#include <string>

namespace tallybot::base {

struct ExtrasSettings {
    int IrcTls = 0;              // connect to the IRC server over TLS
    int IrcTlsVerify = 1;        // verify the server's certificate when TLS is used
    std::string IrcTlsPinSha256; // hex SHA-256 of the server certificate; accepted when it matches
    std::string IrcPassword;     // server password (PASS) sent before registration
    std::string SaslMechanism;   // "", "PLAIN" or "EXTERNAL"
    std::string SaslUser;
    std::string SaslPassword;
    std::string ClientCertFile;          // PEM client certificate (TLS, SASL EXTERNAL)
    std::string ClientKeyFile;           // PEM private key of that certificate
    int AutoReconnect = 0;               // reconnect with backoff after an unexpected disconnect
    int PacedSending = 0;                // queue outgoing lines to keep within the server's flood limits
    int IdentEnabled = 1;                // run the ident responder while connecting
    int IdentPort = 113;                 // port of the ident responder
    std::string IrcEncoding = "Latin-1"; // "Latin-1" or "UTF-8" on the IRC side
    int ModernQuake3 = 0;                // accept present-day Quake 3 engine reply variants
    int A2SQuery = 0;                    // query Half-Life family servers with the A2S protocol
    int IPv6 = 0;                        // allow IPv6 addresses for game and IRC servers
    int GameColoursToIrc = 0;            // turn game colour codes in names into IRC colours
    int TwoDigitColours = 0;             // colour numbers as two digits where a digit or comma follows
    std::string ReportAddress;           // mail address of error reports; empty: no report is offered
    int WinWidth = 0;                    // main window size, kept with its position; 0: the first size
    int WinHeight = 0;
    int UserFromIdent = 0;               // USER name: the part of IdentEmail before "@"
    int ShowErrorNumerics = 0;           // show every error numeric 400-599 in ErrorColor
    int JoinAfter422 = 0;                // join after "no MOTD" (422) as after 376
    int TrailingAfterPrefix = 0;         // trailing text after the prefix (hosts with colons)
    int NickFrom001 = 0;                 // own nick from 001; 433 before it retries with "_"
    int QueryRetry = 0;                  // after ten silent rounds, probe again with growing pauses
};

} // namespace tallybot::base
