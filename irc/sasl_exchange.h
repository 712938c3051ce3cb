#pragma once
// SASL during registration, for servers that want an account before they let a client in:
//   C: CAP LS 302            S: CAP * LS :multi-prefix sasl
//   C: CAP REQ :sasl         S: CAP * ACK :sasl
//   C: AUTHENTICATE PLAIN    S: AUTHENTICATE +
//   C: AUTHENTICATE <base64 of user NUL user NUL password>   (EXTERNAL: "AUTHENTICATE +")
//   S: 903 (success) or 904/905/906 (failure)   C: CAP END
// The server holds registration (PASS, USER, NICK, sent as always) until CAP END. A server that
// offers no SASL, refuses the capability or fails the login gets CAP END too, and the connection
// goes on without an account; the outcome is reported as a note for the pane.

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::irc {

struct IrcLine;

struct SaslSettings {
    std::string Mechanism; // "PLAIN" or "EXTERNAL"; anything else: no SASL
    std::string User;
    std::string Password;
    bool operator==(const SaslSettings&) const = default;
};

class SaslExchange {
public:
    struct Step {
        std::vector<std::string> Send; // lines without CR LF
        std::string Note;              // for the pane, empty when nothing to say
        bool Failed = false;
        bool operator==(const Step&) const = default;
    };

    explicit SaslExchange(SaslSettings settings = {});

    bool Enabled() const;
    bool Active() const { return m_state != State::Idle && m_state != State::Done; }
    // The connection is open: the opening line, or nothing when SASL is off.
    std::vector<std::string> Start();
    // One received line (parsed); ignored unless the exchange is running.
    Step OnLine(const IrcLine& line);

    static std::string Base64(std::string_view bytes);

private:
    enum class State { Idle, Listing, Requested, Authenticating, Done };
    Step Finish(std::string note, bool failed);
    Step Credentials() const;

    SaslSettings m_settings;
    State m_state = State::Idle;
    std::string m_offered; // capabilities collected over a multi-line LS reply
};

} // namespace tallybot::irc
