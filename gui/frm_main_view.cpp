// frmMain: mirroring the view state, first activation, resize to the tray and closing.
#include "app/app_settings.h"
#include "app/logic/main_logic.h"
#include "base/window_units.h"
#include "gui/frm_main.h"
#include "gui/message_boxes.h"
#include "gui/window_geometry.h"
#include "irc/dcc_receive.h"
#include "query/query_cycle.h"

#include <algorithm>

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QTreeWidget>

namespace tallybot::app {

namespace {

using desktop::FromBytes;

void ShowHistory(QComboBox& box, const std::vector<std::string>& list, const std::string& text, bool enabled) {
    const QSignalBlocker block(&box);
    QStringList items;
    for (const auto& entry : list)
        if (!entry.empty()) items << FromBytes(entry);
    QStringList shown;
    for (int i = 0; i < box.count(); ++i)
        shown << box.itemText(i);
    if (shown != items) {
        box.clear();
        box.addItems(items);
    }
    // Rewriting an unchanged text would move the caret while the operator types.
    if (box.currentText() != FromBytes(text)) box.setEditText(FromBytes(text));
    box.setEnabled(enabled);
}

// Before the window is shown its decoration is unknown: a usual title bar and border.
const QMargins kTypicalFrame(4, 32, 4, 4);

template <class W> W* Child(QObject* parent, const char* name) {
    return parent->findChild<W*>(name);
}

} // namespace

void frmMain::Refresh() {
    const MainView& view = m_logic.View();
    RefreshCombos();
    RefreshServer();
    RefreshMenus();
    auto* connectButton = Child<QPushButton>(this, "cmdIRCConnection");
    connectButton->setText(FromBytes(view.cmdIRCConnectionCaption));
    connectButton->setEnabled(view.cmdIRCConnectionEnabled);
    if (!m_activated || !isMinimized()) setWindowTitle(FromBytes(view.Caption));
    if (view.KeepOnTop != m_keepOnTop) ApplyKeepOnTop(view.KeepOnTop);
}

void frmMain::RefreshCombos() {
    const MainView& view = m_logic.View();
    ShowHistory(*Child<QComboBox>(this, "cmbIRCServer"), view.cmbIRCServer.List, view.cmbIRCServer.Text,
                view.cmbIRCServer.Enabled);
    ShowHistory(*Child<QComboBox>(this, "cmbIRCPort"), view.cmbIRCPort.List, view.cmbIRCPort.Text,
                view.cmbIRCPort.Enabled);
    ShowHistory(*Child<QComboBox>(this, "cmbIRCChannel"), view.cmbIRCChannel.List, view.cmbIRCChannel.Text,
                view.cmbIRCChannel.Enabled);
    ShowHistory(*Child<QComboBox>(this, "cmbIRCNick"), view.cmbIRCNick.List, view.cmbIRCNick.Text,
                view.cmbIRCNick.Enabled);
    ShowHistory(*m_gamServer, view.cmbGamServerList, view.Query.cmbGamServerText, view.Query.cmbGamServerEnabled);
    if (m_teamRed->text() != FromBytes(view.txtTeamNameRed)) m_teamRed->setText(FromBytes(view.txtTeamNameRed));
    if (m_teamBlue->text() != FromBytes(view.txtTeamNameBlue)) m_teamBlue->setText(FromBytes(view.txtTeamNameBlue));
}

void frmMain::RefreshServer() {
    const MainView& view = m_logic.View();
    const query::QueryView& q = view.Query;
    auto* query = Child<QPushButton>(this, "cmdGamQuery");
    query->setText(FromBytes(q.cmdGamQueryCaption));
    query->setEnabled(view.cmdGamQueryEnabled);
    auto* status = Child<QLabel>(this, "lblQueryStatus");
    status->setText(FromBytes(q.lblQueryStatusCaption));
    const QColor colour(static_cast<int>(q.lblQueryStatusColour & 0xFF),
                        static_cast<int>((q.lblQueryStatusColour >> 8) & 0xFF),
                        static_cast<int>((q.lblQueryStatusColour >> 16) & 0xFF));
    // Dark text on the yellow and green states, light on the red one.
    const QString text = colour.lightness() > 120 ? "#202020" : "#ffffff";
    status->setStyleSheet(QString("QLabel { background: %1; color: %2; font-weight: 700; border-radius: 4px; "
                                  "padding: 4px 8px; }")
                              .arg(colour.name(), text));
    Child<QPushButton>(this, "cmdProfiles")->setText(FromBytes(q.cmdProfilesCaption));
    Child<QPushButton>(this, "cmdInfoToIRC")->setEnabled(q.cmdInfoToIRCEnabled);
    Child<QPushButton>(this, "cmdAssignPlayers")->setEnabled(q.cmdAssignPlayersEnabled);
    Child<QPushButton>(this, "cmdCorrectScore")->setEnabled(q.cmdCorrectScoreEnabled);

    Child<QLabel>(this, "lblHostname")->setText(FromBytes(view.lblHostname));
    Child<QLabel>(this, "lblGameName")->setText(FromBytes(view.lblGameName));
    Child<QLabel>(this, "lblMapname")->setText(FromBytes(view.lblMapname));
    Child<QLabel>(this, "lblTimelimit")->setText(FromBytes(view.lblTimelimit));
    Child<QLabel>(this, "lblPlayerInfo")->setText(FromBytes(view.lblPlayerInfo));
    const auto& game = m_logic.Game();
    Child<QLabel>(this, "lblTeamScore")
        ->setText(QString("<span style='color:#b00000'>Red %1</span> : <span style='color:#0030c0'>%2 Blue</span>")
                      .arg(game.TeamScoreRed)
                      .arg(game.TeamScoreBlue));

    m_players->clear();
    for (const auto& row : view.lvwPlayers) {
        auto* item =
            new QTreeWidgetItem({FromBytes(row.Name), FromBytes(row.Score), FromBytes(row.Ping), FromBytes(row.Team)});
        for (int c = 1; c < 3; ++c)
            item->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
        if (row.Team == "Red") item->setForeground(3, QColor(0xb0, 0x00, 0x00));
        if (row.Team == "Blue") item->setForeground(3, QColor(0x00, 0x30, 0xc0));
        m_players->addTopLevelItem(item);
    }
}

void frmMain::RefreshMenus() {
    const MainView& view = m_logic.View();
    m_postMenu->setEnabled(view.mnuStatToIRCEnabled);
    m_postMenu->menuAction()->setEnabled(view.mnuStatToIRCEnabled);
    for (int i = 1; i <= profiles::kMaxProfiles; ++i) {
        const auto& entry = view.mnuProfileSel[static_cast<std::size_t>(i)];
        auto* action = m_profileSel[static_cast<std::size_t>(i)];
        action->setText(FromBytes(entry.Caption));
        action->setVisible(entry.Visible);
        action->setChecked(i == m_logic.Settings().Profiles.CurrentProfile);
    }
    if (auto* onTop = findChild<QAction*>("mnuExtrasKeepOnTop")) onTop->setChecked(view.KeepOnTop);
}

void frmMain::ShowDccProgress(const std::string& path, std::uint64_t position, std::uint64_t size) {
    const QString name = QFileInfo(FromBytes(path)).fileName();
    const auto count = [](std::uint64_t bytes) {
        return bytes == 0 ? QString("0") : FromBytes(irc::FormatByteCount(static_cast<double>(bytes)));
    };
    statusBar()->showMessage(position >= size
                                 ? QString("Received %1 (%2 bytes)").arg(name, count(position))
                                 : QString("Receiving %1: %2 of %3 bytes").arg(name, count(position), count(size)));
}

void frmMain::ApplyKeepOnTop(bool onTop) {
    m_keepOnTop = onTop;
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (shown) show(); // changing the flags hides the window
}

void frmMain::Form_Activate() {
    if (m_activated) {
        show();
        return;
    }
    m_activated = true;
    const AppSettings& settings = m_logic.Settings();
    // The first size fits the screen's free area, so the title bar and menus are never off screen.
    const QRect area = screen() ? screen()->availableGeometry() : QRect(0, 0, 1024, 768);
    QSize wanted(kFirstWidth, kFirstHeight);
    if (settings.RemWinPos == 1 && settings.Extras.WinWidth > 0 && settings.Extras.WinHeight > 0)
        wanted = QSize(settings.Extras.WinWidth, settings.Extras.WinHeight);
    const desktop::FirstPlacement place =
        desktop::FitToScreen(wanted, QSize(kMinimumWidth, kMinimumHeight), area, kTypicalFrame);
    setMinimumSize(place.minimum);
    resize(place.size);
    if (settings.WinState == 1) {
        showMinimized();
        return;
    }
    if (settings.WinState == 2) {
        showMaximized();
        return;
    }
    move(settings.RemWinPos == 1 ? QPoint(base::TwipsToPixels(settings.WinLeft, logicalDpiX()),
                                          base::TwipsToPixels(settings.WinTop, logicalDpiY()))
                                  : place.topLeft);
    show();
    if (settings.RemWinPos == 1) return;
    // Shown, the real frame is known: centre again with it.
    const QSize outer = frameGeometry().size();
    move(area.x() + std::max(0, (area.width() - outer.width()) / 2),
         area.y() + std::max(0, (area.height() - outer.height()) / 2));
}

void frmMain::StorePlacement() {
    MainView& view = m_logic.View();
    view.WindowState = isMinimized() ? 1 : (isMaximized() ? 2 : 0);
    const QPoint topLeft = view.WindowState == 0 ? pos() : normalGeometry().topLeft();
    view.WindowTop = topLeft.y();
    view.WindowLeft = topLeft.x();
    const QSize size = view.WindowState == 0 ? this->size() : normalGeometry().size();
    view.WindowWidth = size.width();
    view.WindowHeight = size.height();
    view.WindowDpiX = logicalDpiX();
    view.WindowDpiY = logicalDpiY();
}

void frmMain::Form_Resize() {
    if (m_logic.Settings().MinToTray != 1) return;
    if (!isMinimized()) {
        setWindowTitle(FromBytes(m_logic.View().Caption));
        return;
    }
    m_trayToolTip = FromBytes(TrayTooltip(m_logic.Settings().ConnState));
    m_tray->setToolTip(m_trayToolTip);
    // Without a tray the window stays in the task bar: hiding it would leave no way back.
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    m_tray->show();
    QTimer::singleShot(0, this, [this] {
        if (isMinimized()) hide();
    });
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) Form_Resize();
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!m_closing) {
        m_closing = true;
        StorePlacement();
        if (CloseRequested) {
            CloseRequested();
        } else {
            m_logic.Form_QueryUnload();
        }
        m_tray->hide();
    }
    event->accept();
}

} // namespace tallybot::app
