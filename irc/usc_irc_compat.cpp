// What present-day servers need beyond the classic control, each behind its ServerCompat switch:
// a USER name they accept, error numerics the classic table skips, joining after 422, and the
// own nick from 001 with "_" retries after a 433 during registration.

#include "irc/irc_line.h"
#include "irc/usc_irc.h"

namespace tallybot::irc {

namespace {

constexpr int kNickRetries = 3;

} // namespace

std::string uscIRC::UserName() const {
    if (!m_compat.UserFromIdent) return m_props.Email;
    // "tallybot@localhost" is refused by servers that check user names (InspIRCd: 468).
    const std::string name = m_props.Email.substr(0, m_props.Email.find('@'));
    return name.empty() ? m_props.Nick : name;
}

void uscIRC::ShowErrorNumeric(const IrcLine& l, int numeric) {
    AddText(l.Trailing, m_props.ErrorColor);
    if (m_view.ServerErrorShown) m_view.ServerErrorShown(numeric, l.Trailing);
}

void uscIRC::AfterNumeric(const IrcLine& l, int numeric) {
    const bool registering = m_status == kConnectRequested && !m_welcomed;
    if (numeric == 1 && m_compat.NickFrom001) {
        // The server names us: whatever nick registration ended with is our own from now on.
        m_welcomed = true;
        if (!l.W[3].empty()) m_props.Nick = l.W[3];
    } else if (numeric == 433 && m_compat.NickFrom001 && registering && m_nickRetries < kNickRetries) {
        ++m_nickRetries;
        SendIRCData("NICK " + l.W[4] + "_");
    } else if (numeric == 422 && m_compat.JoinAfter422 && m_status == kConnectRequested && m_props.ControlType != 0) {
        AutoJoin(); // a server without a MOTD ends registration here
    }
}

} // namespace tallybot::irc
