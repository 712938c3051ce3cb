#include "irc/qt/irc_session_sockets.h"

#include "irc/usc_irc.h"

namespace tallybot::irc {

IrcSessionSockets::IrcSessionSockets(const IrcClock& clock) : m_session(m_sockets, clock) {
    m_sockets.SetEvents(&m_session);
    m_wakeup.setSingleShot(true);
    QObject::connect(&m_wakeup, &QTimer::timeout, &m_wakeup, [this] { m_session.Tick(); });
    m_session.SetWakeup([this](std::uint32_t delayMs) { m_wakeup.start(static_cast<int>(delayMs)); });
    m_session.SetBeforeConnect([this](const IrcExtrasOptions& options) { m_sockets.SetServerTls(options.Tls); });
}

IrcSessionSockets::~IrcSessionSockets() {
    m_sockets.SetEvents(nullptr);
    m_session.Attach(nullptr);
}

void IrcSessionSockets::Attach(uscIRC* core, std::function<IrcExtrasOptions()> options) {
    m_session.Attach(core);
    m_session.SetOptionsSource(std::move(options));
}

} // namespace tallybot::irc
