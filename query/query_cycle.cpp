#include "query/query_cycle.h"

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/darkplaces_reply.h"
#include "query/query_cycle_packets.h"
#include "query/query_settings.h"
#include "query/server_address.h"

#include <cmath>
#include <exception>

namespace tallybot::query {

namespace {

constexpr const char* kModule = "frmMain";
constexpr int kSilentRoundsToStop = 10;

// The handler's error trap: an error becomes one log entry under the handler's name.
template <class Body> void Trapped(QueryHost& host, const char* procedure, Body&& body) {
    try {
        body();
    } catch (const vb::VbError& e) {
        host.Log(kModule, procedure, e.Number(), e.what(), true);
    } catch (const std::exception& e) {
        host.Log(kModule, procedure, 1000, e.what(), true); // 1000: application-defined
    }
}

bool IsThreeStepEngine(int engineId) {
    return engineId == kEngineHL || engineId == kEngineUT2k3 || engineId == kEngineFC || engineId == kEngineA2S;
}

} // namespace

QueryCycle::QueryCycle(QueryView& view, GameState& state, QuerySettings& settings, QueryHost& host)
    : m_view(view), m_state(state), m_settings(settings), m_host(host) {}

void QueryCycle::Attach(QuerySocket* socket, NameResolver* resolver) {
    m_socket = socket;
    m_resolver = resolver;
}

bool QueryCycle::IsRunning() const {
    return m_settings.ConnState == 2 || m_settings.ConnState == 3;
}

void QueryCycle::cmdGamQuery_Click() {
    Trapped(m_host, "cmdGamQuery_Click", [this] {
        if (IsRunning())
            Stop();
        else
            Start();
    });
}

void QueryCycle::Start() {
    m_extras = QueryExtrasOf(m_settings.Extras);
    m_a2s.Reset();
    m_probes.End();
    m_versionHinted = false;
    std::string& field = m_view.cmbGamServerText;
    if (m_extras.IPv6 && StartIPv6(field)) return; // [Extras] IPv6: "[::1]:27960", "::1"
    if (field.find(':') == std::string::npos) field += ":" + vb::CStr(m_settings.DefaultPort);
    const std::size_t colon = field.find(':');
    const std::string host = field.substr(0, colon);
    std::string port = field.substr(colon + 1);
    port = port.substr(0, port.find(':'));

    const AddressCheck check = ValidateAddress(host, port, [this](const std::string& m) { m_host.ShowMessage(m); });
    switch (check.kind) {
    case AddressCheck::Kind::Rejected:
        return;
    case AddressCheck::Kind::Address:
        CompleteStart(check.text);
        return;
    case AddressCheck::Kind::HostName:
        if (!m_resolver) {
            m_host.ShowMessage(UnresolvedNameMessage(host));
            return;
        }
        m_resolver->AddrByName(host, ++m_resolveTicket);
        return;
    }
}

void QueryCycle::AddressResolved(int ticket, const std::string& address) {
    if (ticket != m_resolveTicket || IsRunning()) return;
    ++m_resolveTicket; // one answer per lookup
    if (address.empty()) {
        const std::string& field = m_view.cmbGamServerText;
        m_host.ShowMessage(UnresolvedNameMessage(field.substr(0, field.find(':'))));
        return;
    }
    Trapped(m_host, "cmdGamQuery_Click", [&] { CompleteStart(address); });
}

void QueryCycle::CompleteStart(const std::string& address) {
    if (m_socket) m_socket->SetRemoteHost(address);
    m_view.cmdGamQueryCaption = "S&top";
    m_view.lblQueryStatusCaption = "CONNECTING";
    m_view.lblQueryStatusColour = kColourConnecting;
    m_view.tmrGamQueryEnabled = true;
    m_view.cmbGamServerEnabled = false;
    m_settings.ConnState += 2;
    if (m_settings.ConnState == 3 && m_settings.Profiles.Active().Interval == 1) m_view.tmrIRCPostEnabled = true;
    m_host.RefreshControls();
    // A restart from inside a round's error trap leaves its first round to the timer, so a socket
    // that refuses every send cannot recurse without end.
    if (m_roundDepth == 0) tmrGamQuery_Timer();
}

void QueryCycle::Stop() {
    m_view.cmdGamQueryCaption = "S&tart";
    m_view.cmdProfilesCaption = "Profile: None";
    m_view.lblQueryStatusCaption = "OFFLINE";
    m_view.lblQueryStatusColour = kColourOffline;
    m_view.cmbGamServerEnabled = true;
    m_view.tmrGamQueryEnabled = false;
    m_view.cmdInfoToIRCEnabled = false;
    m_view.tmrIRCPostEnabled = false;
    m_view.cmdAssignPlayersEnabled = false;
    m_view.cmdCorrectScoreEnabled = false;

    ClearServerStatus(m_state.Status);
    ClearPlayers(m_state.Players, 0, 0);
    m_host.ResetTeamScores();

    m_settings.Profiles.CurrentProfile = 0;
    m_state.QueryPortOffset = 0;
    m_state.EngineId = kEngineUnknown;
    m_socketErrorSeen = false;
    m_probes.End();
    m_settings.ConnState -= 2;
    // The game data log stays open: the first reply after the stop closes it.
}

void QueryCycle::tmrGamQuery_Timer() {
    ++m_roundDepth;
    // Each statement of the round runs on its own: an error goes to the trap, then the round
    // resumes with the next statement.
    const auto statement = [this](auto&& body) {
        try {
            body();
        } catch (const vb::VbError& e) {
            TrapRoundError(e.Number(), e.what());
        } catch (const std::exception& e) {
            TrapRoundError(1000, e.what());
        }
    };

    statement([&] {
        if (m_probes.Probing()) {
            Probe(); // the previous probe went unanswered
        } else if (++m_missedReplies >= kSilentRoundsToStop) {
            if (m_extras.QueryRetry) { // [Extras]: wait and probe instead of stopping
                BeginProbing();
                return;
            }
            m_host.Log(kModule, "tmrGamQuery_Timer", 0, "Gameserver is not responding. Aborting query.", false);
            m_missedReplies = 0;
            cmdGamQuery_Click(); // stops; the rest of the round still runs
        }
    });
    statement([&] {
        const std::string& field = m_view.cmbGamServerText;
        const double port = vb::Val(ServerFieldPortText(field, m_extras.IPv6));
        if (m_socket) m_socket->SetRemotePort(vb::CLng(port + m_state.QueryPortOffset));
    });
    const auto send = [&](int engineId) {
        statement([&] {
            const std::string packet =
                engineId == kEngineA2S ? m_a2s.NextRequest(m_state.QueryStep) : BuildQuery(engineId, m_state.QueryStep);
            if (m_socket) m_socket->SendData(packet);
        });
    };
    if (m_state.EngineId == kEngineUnknown) {
        // Every engine in order; HL, UT2k3 and FC get whatever steps the shared counter gives them.
        for (int engineId = 1; engineId <= kEngineCount; ++engineId)
            send(engineId);
        // [Extras] A2SQuery: the A2S info request after the classic seventeen.
        if (m_extras.A2SQuery)
            statement([&] {
                if (m_socket) m_socket->SendData(m_a2s.ProbeRequest());
            });
    } else if (m_state.EngineId == kEnginePending) {
        send(kEngineUT);
        send(kEngineUT2k3);
    } else {
        const int engineId = m_state.EngineId;
        if (!m_probes.Probing()) m_view.tmrGamQueryInterval = EngineInterval(engineId);
        send(engineId);
    }
    --m_roundDepth;
}

int QueryCycle::EngineInterval(int engineId) const {
    return IsThreeStepEngine(engineId) ? static_cast<int>(std::lround(m_settings.QueryTime / 3.0))
                                       : m_settings.QueryTime;
}

void QueryCycle::TrapRoundError(long number, const std::string& description) {
    if (!m_socketErrorSeen) {
        if (m_settings.Reconnect == 0 && number > 0)
            m_host.Log(kModule, "tmrGamQuery_Timer", number, description, true);
        m_socketErrorSeen = true;
        return;
    }
    // The second error ends the run; with Reconnect 1 the query starts afresh at once. A run
    // already stopped by this round stays stopped.
    if (!IsRunning()) return;
    NoticeStop("tmrGamQuery_Timer", description);
    cmdGamQuery_Click();
    if (m_settings.Reconnect == 1) cmdGamQuery_Click();
}

void QueryCycle::sckGamServ_DataArrival(std::string_view datagram, const LocalDateTime& now) {
    if (!IsRunning()) {
        // A late reply: the run is over, so its data log is closed now.
        m_replyBuffer.clear();
        if (m_settings.DoLog == 1) {
            if (m_settings.GameLogTimeStamp == 1) m_dataLog.WriteStopped(now);
            m_dataLog.Close();
        }
        return;
    }
    m_missedReplies = 0;
    if (m_probes.Probing()) EndProbing();
    if (m_state.EngineId == kEngineUnknown || m_state.EngineId == kEnginePending) {
        base::ResumeNext([&] { DetectEngineWithExtras(datagram, m_state, m_extras); });
        m_justDetected = true;
        HintModernQuake3(datagram);
    }
    if (m_settings.DoLog == 1) WriteToDataLog(datagram, now);
    Dispatch(datagram);

    const profiles::GameProfile& profile = m_settings.Profiles.Active();
    if (profile.Advanced != 1) m_view.cmdCorrectScoreEnabled = true;
    if (profile.AutoTeams != 1) m_view.cmdAssignPlayersEnabled = true;

    if (m_justDetected) {
        m_view.lblQueryStatusCaption = "ONLINE - " + EngineCodeWithExtras(m_state.EngineId, m_extras);
        m_view.lblQueryStatusColour = kColourOnline;
        base::ResumeNext([&] { m_host.SelectProfile(); });
        m_justDetected = false;
    }
}

void QueryCycle::WriteToDataLog(std::string_view reply, const LocalDateTime& now) {
    if (m_justDetected) {
        // A dateless log holds only the latest run, so it is truncated; a dated one grows.
        const bool inclDate = m_settings.LogInclDate == 1;
        m_dataLog.Open(m_settings.LogFolder + GameLogFileName(m_view.cmbGamServerText, inclDate, now), inclDate);
        if (m_settings.GameLogTimeStamp == 1) m_dataLog.WriteStarted(now);
    }
    m_dataLog.WriteReply(reply);
}

void QueryCycle::Dispatch(std::string_view reply) {
    const int engineId = m_state.EngineId;
    const auto refreshAndCheck = [&] {
        base::ResumeNext([&] { m_host.RefreshDisplay(); });
        base::ResumeNext([&] { m_host.CalcCappedPlayer(m_settings.Profiles.Active().ScorePerCap, 0); });
    };
    switch (engineId) {
    case kEngineQ3: {
        // ModernQuake3: a DarkPlaces reply is read through its Quake 3 form.
        const std::string asQuake3 =
            m_extras.ModernQuake3 && IsDarkPlacesReply(reply) ? DarkPlacesAsQuake3(reply) : std::string();
        const std::string_view q3 = asQuake3.empty() ? reply : std::string_view(asQuake3);
        base::ResumeNext([&] { m_host.ParseReply(engineId, q3); });
        base::ResumeNext([&] { m_host.HandleQ3Info(q3); });
        return;
    }
    case kEngineUT:
    case kEngineAA:
        if (auto whole = AssembleGameSpy(m_replyBuffer, reply))
            base::ResumeNext([&] { m_host.ParseReply(engineId, *whole); });
        refreshAndCheck();
        return;
    case kEngineQ2:
    case kEngineHL:
    case kEngineRTCW:
    case kEngineEF:
    case kEngineJK2:
    case kEngineSoF2:
    case kEngineUT2k3:
    case kEngineMoH:
    case kEngineET:
    case kEngineJA:
    case kEngineCoD:
    case kEngineEF2:
    case kEngineFC:
    case kEngineD3:
        base::ResumeNext([&] { m_host.ParseReply(engineId, reply); });
        refreshAndCheck();
        return;
    case kEngineA2S:
        DispatchA2S(reply);
        return;
    default:
        return; // unknown or pending: no parser
    }
}

void QueryCycle::sckGamServ_Error(long number, const std::string& description) {
    if (!m_socketErrorSeen) {
        m_host.Log(kModule, "sckGamServ", number, description, true);
        m_socketErrorSeen = true;
        return;
    }
    // The second error stops a running query; it never starts a stopped one.
    if (!IsRunning()) return;
    NoticeStop("sckGamServ", description);
    cmdGamQuery_Click();
}

} // namespace tallybot::query
