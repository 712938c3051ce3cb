// The IRC connect button, the IRC history boxes and the IRC control's state changes.
#include "app/logic/history.h"
#include "app/logic/main_logic.h"
#include "base/vb_convert.h"
#include "reporting/templates.h"

namespace tallybot::app {

namespace {

constexpr const char* kConnectCaption = "&Connect";
constexpr const char* kDisconnectCaption = "Dis&connect";
constexpr char kNoBreakSpace = '\xA0';

} // namespace

std::string MainLogic::QuitMessage() const {
    return m_settings.ExtTextCol + kAppTitle + m_settings.InfoTextCol + kNoBreakSpace + reporting::ProgramVersion() +
           kNoBreakSpace + m_settings.ExtTextCol + "by" + kNoBreakSpace + m_settings.InfoTextCol + "Kavik";
}

void MainLogic::cmdIRCConnection_Click() {
    Handler("cmdIRCConnection_Click", [&] {
        if (m_view.cmdIRCConnectionCaption == kConnectCaption)
            ConnectIrc();
        else
            DisconnectIrc();
    });
}

void MainLogic::ConnectIrc() {
    irc::IrcProperties& props = m_irc.Properties();
    props.ServerAddress = m_view.cmbIRCServer.Text;
    props.ServerPort = vb::CLng(vb::Val(m_view.cmbIRCPort.Text));
    m_irc.SetChannelName(m_view.cmbIRCChannel.Text);
    props.Email = m_settings.IdentEmail;
    props.RealName = m_settings.RealName;
    props.Nick = m_view.cmbIRCNick.Text;
    props.Ident = m_settings.Extras.IdentEnabled == 1;
    props.IdentPort = m_settings.Extras.IdentPort;
    m_irc.SetServerPassword(m_settings.Extras.IrcPassword);
    m_irc.Connect();
    UpdatePostControls();
}

void MainLogic::DisconnectIrc() {
    m_view.cmdIRCConnectionEnabled = false;
    m_userDisconnect = true;
    m_irc.Disconnect(QuitMessage());
    m_userDisconnect = false;
    m_view.cmdIRCConnectionEnabled = true;
    m_settings.ConnState -= 1;
    // A connection the server already closed raises no Disconnected event; the button is
    // restored here so that it never stays on "Dis&connect" with nothing to disconnect.
    if (m_view.cmdIRCConnectionCaption != kConnectCaption) RestoreConnectButton();
    UpdatePostControls();
}

void MainLogic::RestoreConnectButton() {
    m_view.cmdIRCConnectionCaption = kConnectCaption;
    for (HistoryCombo* box : {&m_view.cmbIRCServer, &m_view.cmbIRCPort, &m_view.cmbIRCChannel, &m_view.cmbIRCNick})
        box->Enabled = true;
    m_view.Query.tmrIRCPostEnabled = false;
    m_view.Query.cmdInfoToIRCEnabled = false;
    UpdateConnectButton();
}

void MainLogic::ircMain_StatusChange() {
    Handler("ircMain_StatusChange", [&] {
        switch (m_irc.ConnectStatus()) {
        case irc::kConnectRequested:
            m_view.cmdIRCConnectionCaption = kDisconnectCaption;
            for (HistoryCombo* box :
                 {&m_view.cmbIRCServer, &m_view.cmbIRCPort, &m_view.cmbIRCChannel, &m_view.cmbIRCNick})
                box->Enabled = false;
            m_settings.ConnState += 1;
            if (m_settings.ConnState == 3) {
                m_view.Query.tmrIRCPostEnabled = m_settings.Profiles.Active().Interval == 1;
                m_view.Query.cmdInfoToIRCEnabled = true;
            }
            UpdatePostControls();
            break;
        case irc::kJoined:
            if (m_settings.PerformEnable == 1) m_irc.ProcessUserEntry(m_settings.PerformCmd);
            break;
        case irc::kJoinSent:
            m_reporting.Commands.PostOnJoinMessage();
            break;
        default:
            break;
        }
    });
}

void MainLogic::ircMain_Disconnected() {
    Handler("ircMain_Disconnected", [&] {
        // A connection that failed on its own (socket error) gives up its share of ConnState here;
        // the operator's disconnect subtracts it in the button handler.
        if (!m_userDisconnect && (m_settings.ConnState == 1 || m_settings.ConnState == 3)) m_settings.ConnState -= 1;
        RestoreConnectButton();
        UpdatePostControls();
    });
}

void MainLogic::UpdateConnectButton() {
    m_view.cmdIRCConnectionEnabled = !m_view.cmbIRCServer.Text.empty() && !m_view.cmbIRCPort.Text.empty() &&
                                     !m_view.cmbIRCChannel.Text.empty() && !m_view.cmbIRCNick.Text.empty();
}

void MainLogic::SetIrcText(HistoryCombo MainView::*combo, const std::string& text) {
    (m_view.*combo).Text = text;
    UpdateConnectButton();
    Sync();
}

void MainLogic::cmbGamServer_Change(const std::string& text) {
    m_view.Query.cmbGamServerText = text;
    m_view.cmdGamQueryEnabled = !text.empty();
    Sync();
}

void MainLogic::cmbIRC_Commit(HistoryCombo MainView::*combo) {
    HistoryCombo& box = m_view.*combo;
    AddToHistory(box.Text, box.List);
    Sync();
}

void MainLogic::cmbGamServer_Commit() {
    AddToHistory(m_view.Query.cmbGamServerText, m_view.cmbGamServerList);
    Sync();
}

} // namespace tallybot::app
