#include "irc/irc_session.h"

#include "irc/irc_line.h"
#include "irc/irc_wire.h"
#include "irc/usc_irc.h"

#include <algorithm>
#include <optional>

namespace tallybot::irc {

IrcSession::IrcSession(IrcTransport& sockets, const IrcClock& clock) : m_sockets(sockets), m_clock(clock) {}

void IrcSession::Attach(uscIRC* core) {
    if (m_core) m_core->SetSessionHooks(nullptr);
    m_core = core;
    if (m_core) m_core->SetSessionHooks(this);
}

std::uint64_t IrcSession::Now() {
    // The core's tick wraps after 49 days; differences of it do not.
    const std::uint32_t tick = m_clock.TickCount();
    if (m_clockStarted) m_now += static_cast<std::uint32_t>(tick - m_lastTick);
    m_clockStarted = true;
    m_lastTick = tick;
    return m_now;
}

void IrcSession::Write(std::string_view wireLine) {
    m_sockets.ServerSend(EncodeWireLine(wireLine, m_options.Encoding));
}

void IrcSession::WriteDirect(const std::string& text) {
    Write(WireLine(text));
}

void IrcSession::Note(const std::string& text, bool error) {
    if (!m_core) return;
    const IrcProperties& p = m_core->Properties();
    m_core->AddText(error ? "[IRC] " + text : "*** " + text, error ? p.ErrorColor : p.EventColor);
}

void IrcSession::ArmWakeup() {
    if (!m_wakeup) return;
    std::optional<std::uint64_t> next = m_queue.NextDueMs();
    const auto earliest = [&](std::uint64_t at) { next = next ? std::min(*next, at) : at; };
    if (m_open && m_options.AutoReconnect) earliest(m_keepAlive.NextCheckMs());
    if (auto attempt = m_reconnect.NextAttemptMs()) earliest(*attempt);
    if (!next) return;
    const std::uint64_t now = Now();
    const std::uint64_t delay = *next > now ? *next - now : 0;
    m_wakeup(static_cast<std::uint32_t>(std::min<std::uint64_t>(delay, 0x7FFFFFFF)));
}

void IrcSession::Tick() {
    const std::uint64_t now = Now();
    for (const std::string& line : m_queue.Due(now))
        Write(line);
    if (m_open && m_options.AutoReconnect) {
        switch (m_keepAlive.Check(now)) {
        case KeepAlive::Action::SendPing:
            WriteDirect("PING :keepalive");
            break;
        case KeepAlive::Action::Dead:
            Note("No data from the server for " + std::to_string(KeepAlive::kDeadAfterMs / 1000) + " seconds", true);
            m_open = false;
            if (m_core) m_core->OnServerClosed(); // closes the socket, then OnConnectionLost
            break;
        case KeepAlive::Action::None:
            break;
        }
    }
    if (m_reconnect.Due(now) && m_wanted && m_core && m_core->ConnectStatus() == kNotConnected) {
        m_reconnect.Attempting(now);
        m_core->Reconnect();
    }
    ArmWakeup();
}

// From the core

void IrcSession::ServerConnect(const std::string& host, int port) {
    m_queue.Reset();
    m_decoder.Reset();
    m_watchCarry.clear();
    m_sasl = SaslExchange(m_options.Sasl);
    m_open = false;
    if (m_beforeConnect) m_beforeConnect(m_options);
    m_sockets.ServerConnect(host, port);
}

void IrcSession::ServerSend(std::string_view bytes) {
    if (!m_options.PacedSending) {
        Write(bytes);
        return;
    }
    for (const std::string& line : m_queue.Offer(std::string(bytes), Now()))
        Write(line);
    ArmWakeup();
}

void IrcSession::ServerClose() {
    m_queue.Reset();
    m_open = false;
    m_sockets.ServerClose();
}

// From the sockets

void IrcSession::OnServerConnected() {
    m_open = true;
    m_keepAlive.Traffic(Now());
    // CAP LS goes first, so the server holds the registration lines that follow until CAP END.
    for (const std::string& line : m_sasl.Start())
        WriteDirect(line);
    if (m_core) m_core->OnServerConnected();
    ArmWakeup();
}

void IrcSession::WatchLines(std::string_view decoded) {
    m_watchCarry.append(decoded);
    std::size_t start = 0;
    for (std::size_t lf = m_watchCarry.find('\n'); lf != std::string::npos; lf = m_watchCarry.find('\n', start)) {
        const IrcLine line = ParseIrcLine(std::string_view(m_watchCarry).substr(start, lf + 1 - start));
        start = lf + 1;
        if (line.W[2] == "001") m_reconnect.Registered();
        if (!m_sasl.Active()) continue;
        const SaslExchange::Step step = m_sasl.OnLine(line);
        for (const std::string& reply : step.Send)
            WriteDirect(reply);
        if (!step.Note.empty()) Note(step.Note, step.Failed);
    }
    m_watchCarry.erase(0, start);
    if (m_watchCarry.size() > kWatchLineLimit) m_watchCarry.clear();
}

void IrcSession::OnServerData(std::string_view bytes) {
    m_keepAlive.Traffic(Now());
    const std::string decoded = m_options.Encoding == IrcEncoding::Utf8 ? m_decoder.Feed(bytes) : std::string(bytes);
    WatchLines(decoded);
    if (m_core) m_core->OnServerData(decoded);
}

void IrcSession::OnServerClosed() {
    m_open = false;
    m_queue.Reset();
    if (m_core) m_core->OnServerClosed();
}

void IrcSession::OnServerError(int number, const std::string& description) {
    m_open = false;
    if (m_core) m_core->OnServerError(number, description);
}

void IrcSession::OnIdentConnectionRequest(long requestId, int localPort) {
    if (m_core) m_core->OnIdentConnectionRequest(requestId, localPort);
}
void IrcSession::OnIdentData(std::string_view bytes) {
    if (m_core) m_core->OnIdentData(bytes);
}
void IrcSession::OnIdentError(int number, const std::string& description) {
    if (m_core) m_core->OnIdentError(number, description);
}
void IrcSession::OnDccConnected() {
    if (m_core) m_core->OnDccConnected();
}
void IrcSession::OnDccData(std::string_view bytes) {
    if (m_core) m_core->OnDccData(bytes);
}
void IrcSession::OnDccClosed() {
    if (m_core) m_core->OnDccClosed();
}
void IrcSession::OnDccError(int number, const std::string& description) {
    if (m_core) m_core->OnDccError(number, description);
}

// Hooks

void IrcSession::OnHostConnect() {
    if (m_source) m_options = m_source();
    if (m_core) m_core->SetCompat(m_options.Compat);
    m_wanted = true;
    m_reconnect.Cancel();
}

void IrcSession::OnHostDisconnect() {
    m_wanted = false;
    m_reconnect.Cancel();
}

bool IrcSession::ReconnectsAfterLoss() const {
    return m_options.AutoReconnect && m_wanted;
}

void IrcSession::OnConnectionLost() {
    m_open = false;
    m_queue.Reset();
    if (!ReconnectsAfterLoss()) return;
    const std::uint64_t now = Now();
    const std::uint64_t at = m_reconnect.ConnectionLost(now);
    Note("Reconnecting in " + std::to_string((at - now + 999) / 1000) + " seconds", false);
    ArmWakeup();
}

} // namespace tallybot::irc
