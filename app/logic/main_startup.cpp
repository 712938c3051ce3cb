// Start-up (Main, Form_Load) and shutdown (Form_QueryUnload) of the main window.
#include "app/logic/main_logic.h"
#include "app/settings_file.h"
#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "base/window_units.h"
#include "profiles/profile_store.h"
#include "reporting/templates.h"

namespace tallybot::app {

void MainLogic::Main(const StartupOptions& options) {
    // 1. The program folder, ending in a separator.
    m_settings.AppPath = options.home;
    if (m_settings.AppPath.empty() || m_settings.AppPath.back() != '/') m_settings.AppPath += '/';
    m_shell = options.shell;
    m_commandLine = options.commandLine;

    // 2. The log, with a fresh file for this run.
    m_log = std::make_unique<base::clsAppLog>(m_settings.AppPath + kAppTitle + ".log", kAppTitle,
                                              reporting::ProgramVersion(), options.shell, options.clock);
    m_log->Facts = options.facts;
    m_settings.Log = m_log.get();
    m_ctx.log = m_log.get();
    m_log->Log("modMain", "Main", 0, "Application startup, initializing", false, false, true);

    // 3. Common controls: nothing to initialise here. 4. Profiles, then 5. settings, each under
    // its own trap, so a broken profile never costs the settings.
    Step("modMain", "LoadAllProfiles", [&] { profiles::LoadAllProfiles(m_settings); });
    Step("modMain", "LoadSettings", [&] { LoadSettings(m_settings); });
    m_log->ReportAddress = m_settings.Extras.ReportAddress;
    // 6. The main window.
    Form_Load();
}

void MainLogic::Form_Load() {
    Handler("Form_Load", [&] {
        RefreshProfileMenu();
        Step("frmMain", "LoadHistoryCombos", [&] { LoadHistoryCombos(); });
        Step("frmMain", "ApplyDisplayOptions", [&] { ApplyDisplayOptions(); });
        cmbGamServer_Change(m_view.Query.cmbGamServerText);
        m_view.Caption = std::string(kAppTitle) + " " + reporting::ProgramVersion();
        m_log->Log("frmMain", "Form_Load", 0, "Form loaded");
    });
}

void MainLogic::LoadHistoryCombos() {
    m_view.cmbIRCServer.List.clear();
    m_view.cmbIRCPort.List.clear();
    m_view.cmbIRCChannel.List.clear();
    m_view.cmbIRCNick.List.clear();
    m_view.cmbGamServerList.clear();
    for (int i = 1; i <= kHistorySize; ++i) {
        const auto pos = static_cast<std::size_t>(i);
        m_view.cmbIRCServer.List.push_back(m_settings.IrcServer[pos]);
        // Port 0 is the "never set" value of the file: the box stays empty.
        m_view.cmbIRCPort.List.push_back(m_settings.IrcPort[pos] == 0 ? std::string()
                                                                      : std::to_string(m_settings.IrcPort[pos]));
        m_view.cmbIRCChannel.List.push_back(m_settings.IrcChannel[pos]);
        m_view.cmbIRCNick.List.push_back(m_settings.IrcNick[pos]);
        m_view.cmbGamServerList.push_back(m_settings.GameHost[pos]);
    }
    m_view.cmbIRCServer.Text = m_view.cmbIRCServer.List[0];
    m_view.cmbIRCPort.Text = m_view.cmbIRCPort.List[0];
    m_view.cmbIRCChannel.Text = m_view.cmbIRCChannel.List[0];
    m_view.cmbIRCNick.Text = m_view.cmbIRCNick.List[0];
    m_view.Query.cmbGamServerText = m_view.cmbGamServerList[0];
    m_view.Query.tmrGamQueryInterval = m_settings.QueryTime;
    UpdateConnectButton();
}

void MainLogic::ApplyDisplayOptions() {
    m_view.KeepOnTop = m_settings.KeepOnTop == 1;
    m_irc.Properties().ShowPing = m_settings.ShowPing == 1;
    m_irc.Properties().TimeStamp = m_settings.IrcTimeStamp == 1;
}

void MainLogic::SaveHistoryCombos() {
    const auto save = [](const std::vector<std::string>& list, auto& stored, auto convert) {
        for (int i = 1; i <= kHistorySize; ++i) {
            const auto pos = static_cast<std::size_t>(i);
            if (pos - 1 < list.size() && !list[pos - 1].empty()) stored[pos] = convert(list[pos - 1]);
        }
    };
    const auto text = [](const std::string& s) { return s; };
    save(m_view.cmbIRCServer.List, m_settings.IrcServer, text);
    save(m_view.cmbIRCPort.List, m_settings.IrcPort, [](const std::string& s) { return vb::CLng(vb::Val(s)); });
    save(m_view.cmbIRCChannel.List, m_settings.IrcChannel, text);
    save(m_view.cmbIRCNick.List, m_settings.IrcNick, text);
    save(m_view.cmbGamServerList, m_settings.GameHost, text);
}

void MainLogic::StoreWindowPlacement() {
    m_settings.WinState = m_view.WindowState;
    m_settings.WinTop = base::PixelsToTwips(m_view.WindowTop, m_view.WindowDpiY);
    m_settings.WinLeft = base::PixelsToTwips(m_view.WindowLeft, m_view.WindowDpiX);
    m_settings.Extras.WinWidth = m_view.WindowWidth;
    m_settings.Extras.WinHeight = m_view.WindowHeight;
}

// Every step runs under its own trap: a failing step is logged and the ones after it, the
// settings save above all, still run.
void MainLogic::Form_QueryUnload() {
    // 1. The game query first, then IRC; ConnState is read again in between.
    Step("frmMain", "cmdGamQuery_Click", [&] {
        if (m_settings.ConnState == 2 || m_settings.ConnState == 3) m_query.cmdGamQuery_Click();
    });
    Step("frmMain", "cmdIRCConnection_Click", [&] {
        if (m_settings.ConnState == 1 || m_settings.ConnState == 3) cmdIRCConnection_Click();
    });
    // 2. No help viewer to close; the error report is offered.
    Step("clsAppLog", "HandleAppErrors", [&] { m_log->HandleAppErrors(); });
    // 3. - 5.
    Step("frmMain", "SaveHistoryCombos", [&] { SaveHistoryCombos(); });
    Step("frmMain", "Form_QueryUnload", [&] {
        if (m_settings.RemWinPos == 1) StoreWindowPlacement();
    });
    Step("modMain", "SaveSettings", [&] { SaveSettings(m_settings); });
    // 6. The remote-control channel is closed by the runtime before these steps begin.
    // 7. The run ends with a fresh file holding only this line.
    m_log->Log("frmMain", "Form_QueryUnload", 0, "Application terminated normally", false, false, true);
    Sync();
}

} // namespace tallybot::app
