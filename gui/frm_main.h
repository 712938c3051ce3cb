#pragma once
// frmMain: the main window. It shows MainLogic's view state in widgets and turns clicks, typing
// and menu choices into MainLogic's operations; the logic itself lives there, not here. It also
// owns the desktop parts: the tray icon and its menu, the dialogs, help and the about box.

#include "app/logic/main_view.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include <QMainWindow>
#include <QUrl>

class QAction;
class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QSystemTrayIcon;
class QTabWidget;
class QTreeWidget;

namespace tallybot::desktop {
class IrcPaneWidget;
class MessageBoxes;
} // namespace tallybot::desktop

namespace tallybot::app {

class MainLogic;

class frmMain : public QMainWindow {
public:
    frmMain(MainLogic& logic, desktop::MessageBoxes& boxes, QWidget* parent = nullptr);
    ~frmMain() override;

    // Mirrors MainLogic's view into the widgets; run after every change of the view.
    void Refresh();
    // First activation: the stored window state, then the stored position or the screen's centre.
    void Form_Activate();
    // The window's state and position into the view, for the shutdown to save.
    void StorePlacement();

    // Menu and button handlers that open windows of their own.
    void mnuExtrasOptions_Click();
    void mnuProfileEdit_Click(int page = 0);
    void mnuInfoAbout_Click();
    void mnuInfoHelp_Click();
    void cmdAssignPlayers_Click();
    void cmdCorrectScore_Click();
    void mnuSysOpen_Click();
    void mnuSysQuit_Click();

    // "Receiving NAME: 51,200 of 102,407 bytes", then "Received NAME (102,407 bytes)".
    void ShowDccProgress(const std::string& path, std::uint64_t position, std::uint64_t size);

    const QString& TrayToolTip() const { return m_trayToolTip; }
    desktop::IrcPaneWidget& IrcPane() { return *m_irc; }

    // How a dialog runs (modal by default); tests answer the dialog instead.
    std::function<void(QDialog&)> RunDialog;
    // Opens help pages and links; QDesktopServices by default.
    std::function<void(const QUrl&)> OpenUrl;
    // The window was closed by the operator (File, Quit, the tray's Quit or the title bar): the
    // program's shutdown runs here. Without it the logic's own shutdown runs.
    std::function<void()> CloseRequested;

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    static constexpr int kFirstWidth = 1000; // the first size, before it is fitted to the screen
    static constexpr int kFirstHeight = 660;
    static constexpr int kMinimumWidth = 760;
    static constexpr int kMinimumHeight = 520;

private:
    void BuildMenus();
    void BuildTray();
    QWidget* BuildConnectionBar();
    QWidget* BuildServerPage();
    QWidget* BuildMatchPage();
    QComboBox* HistoryBox(const char* name, HistoryCombo MainView::*combo);
    void Form_Resize();
    void RefreshCombos();
    void RefreshServer();
    void RefreshMenus();
    void ApplyKeepOnTop(bool onTop);

    MainLogic& m_logic;
    desktop::MessageBoxes& m_boxes;
    desktop::IrcPaneWidget* m_irc = nullptr;
    QTabWidget* m_tabs = nullptr;
    QBoxLayout* m_bar = nullptr; // the two connection groups: side by side, or stacked when narrow
    QComboBox* m_gamServer = nullptr;
    QTreeWidget* m_players = nullptr;
    QLineEdit* m_teamRed = nullptr;
    QLineEdit* m_teamBlue = nullptr;
    QMenu* m_postMenu = nullptr;
    std::array<QAction*, 21> m_profileSel{}; // 1..20
    QSystemTrayIcon* m_tray = nullptr;
    QMenu* m_trayMenu = nullptr;
    QString m_trayToolTip;
    bool m_activated = false;
    bool m_keepOnTop = false;
    bool m_closing = false;
};

} // namespace tallybot::app
