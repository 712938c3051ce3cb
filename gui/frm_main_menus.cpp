// frmMain: the menus, the tray icon and the windows opened from them.
#include "app/logic/main_logic.h"
#include "gui/frm_about.h"
#include "gui/frm_assign_players.h"
#include "gui/frm_correct_score.h"
#include "gui/frm_main.h"
#include "gui/frm_options.h"
#include "gui/frm_profiles.h"
#include "gui/message_boxes.h"
#include "gui/program_documentation.h"
#include "gui/tallybot_icon.h"

#include <functional>

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QSystemTrayIcon>
#include <QTabWidget>

namespace tallybot::app {

namespace {

QAction* Item(QMenu* menu, const char* name, const QString& caption) {
    auto* action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

QAction* Separator(QMenu* menu, const char* name) {
    auto* action = menu->addSeparator();
    action->setObjectName(name);
    return action;
}

QMenu* Menu(QWidget* parent, const char* name, const QString& caption) {
    auto* menu = new QMenu(caption, parent);
    menu->setObjectName(name);
    return menu;
}

} // namespace

void frmMain::BuildMenus() {
    QMenuBar* bar = menuBar();
    QMenu* file = Menu(this, "mnuFile", "&File");
    auto* quit = Item(file, "mnuFileQuit", "&Quit");
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, [this] { close(); });
    bar->addMenu(file);

    QMenu* extras = Menu(this, "mnuExtras", "E&xtras");
    connect(Item(extras, "mnuExtrasOptions", "&Options..."), &QAction::triggered, this,
            [this] { mnuExtrasOptions_Click(); });
    Separator(extras, "mnuExtrasSeperator");
    auto* onTop = Item(extras, "mnuExtrasKeepOnTop", "Keep window on &top");
    onTop->setCheckable(true);
    connect(onTop, &QAction::triggered, this, [this](bool checked) {
        m_logic.Settings().KeepOnTop = checked ? 1 : 0;
        m_logic.ApplyDisplayOptions();
        Refresh();
    });
    bar->addMenu(extras);

    QMenu* profiles = Menu(this, "mnuProfiles", "&Profiles");
    connect(Item(profiles, "mnuProfileEdit", "&Edit profiles..."), &QAction::triggered, this,
            [this] { mnuProfileEdit_Click(); });
    profiles->addSeparator();
    for (int i = 1; i <= profiles::kMaxProfiles; ++i) {
        auto* sel = profiles->addAction(QString());
        sel->setObjectName(QString("mnuProfileSel(%1)").arg(i));
        sel->setVisible(false);
        sel->setCheckable(true); // the profile in use carries the check mark
        connect(sel, &QAction::triggered, this, [this, i] {
            m_logic.mnuProfileSel_Click(i);
            Refresh();
        });
        m_profileSel[static_cast<std::size_t>(i)] = sel;
    }
    bar->addMenu(profiles);

    m_postMenu = Menu(this, "mnuStatToIRC", "P&ost");
    const struct {
        const char* name;
        const char* caption;
        std::function<void(MainLogic&)> post;
    } posts[] = {
        {"mnuPostServer", "&Server information", std::mem_fn(&MainLogic::mnuPostServer_Click)},
        {"mnuPostServerShort", "Server information (short)", std::mem_fn(&MainLogic::mnuPostServerShort_Click)},
        {"mnuPostPlayers", "&Player information", std::mem_fn(&MainLogic::mnuPostPlayers_Click)},
        {"mnuPostPlayersShort", "Player information (short)", std::mem_fn(&MainLogic::mnuPostPlayersShort_Click)},
        {"mnuPostTeams", "&Team information", std::mem_fn(&MainLogic::mnuPostTeams_Click)},
        {"mnuPostTeamsShort", "Team information (short)", std::mem_fn(&MainLogic::mnuPostTeamsShort_Click)},
    };
    const auto addPost = [this](QMenu* menu, const char* name, const char* caption,
                                std::function<void(MainLogic&)> post) {
        connect(Item(menu, name, caption), &QAction::triggered, this, [this, post] {
            post(m_logic);
            Refresh();
        });
    };
    for (const auto& p : posts)
        addPost(m_postMenu, p.name, p.caption, p.post);
    QMenu* custom = Menu(m_postMenu, "mnuCustMess", "&Custom message");
    addPost(custom, "mnuPostCustomMess", "&Post the custom message", std::mem_fn(&MainLogic::mnuPostCustomMess_Click));
    connect(Item(custom, "mnuCustMessSel", "&Edit the custom message..."), &QAction::triggered, this,
            [this] { mnuProfileEdit_Click(2); });
    m_postMenu->addMenu(custom);
    Separator(m_postMenu, "mnuPostSeperator");
    addPost(m_postMenu, "mnuPostAbout", "&About Tallybot", std::mem_fn(&MainLogic::mnuPostAbout_Click));
    addPost(m_postMenu, "mnuPostHelp", "Channel command &help", std::mem_fn(&MainLogic::mnuPostHelp_Click));
    bar->addMenu(m_postMenu);

    QMenu* info = Menu(this, "mnuInfo", "&Info");
    auto* help = Item(info, "mnuInfoHelp", "&Help");
    help->setShortcut(QKeySequence(Qt::Key_F1));
    connect(help, &QAction::triggered, this, [this] { mnuInfoHelp_Click(); });
    Separator(info, "mnuInfoSeperator");
    connect(Item(info, "mnuInfoAbout", "&About..."), &QAction::triggered, this, [this] { mnuInfoAbout_Click(); });
    bar->addMenu(info);
}

void frmMain::BuildTray() {
    m_trayMenu = Menu(this, "mnuSysTray", "Tray");
    connect(Item(m_trayMenu, "mnuSysOpen", "&Open Tallybot"), &QAction::triggered, this,
            [this] { mnuSysOpen_Click(); });
    Separator(m_trayMenu, "mnuSysSeperator");
    connect(Item(m_trayMenu, "mnuSysQuit", "&Quit"), &QAction::triggered, this, [this] { mnuSysQuit_Click(); });
    m_tray = new QSystemTrayIcon(desktop::TallybotIcon(), this);
    m_tray->setObjectName("clsSysTray");
    m_tray->setContextMenu(m_trayMenu);
    connect(m_tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) mnuSysOpen_Click();
    });
}

void frmMain::mnuSysOpen_Click() {
    m_tray->hide();
    showNormal();
    raise();
    activateWindow();
}

void frmMain::mnuSysQuit_Click() {
    m_tray->hide();
    close();
}

void frmMain::mnuExtrasOptions_Click() {
    desktop::frmOptions dialog(m_logic.Settings(), m_boxes, this);
    RunDialog(dialog);
    if (dialog.result() == QDialog::Accepted) m_logic.ApplyDisplayOptions();
    Refresh();
}

void frmMain::mnuProfileEdit_Click(int page) {
    desktop::frmProfiles dialog(m_logic.Settings(), m_boxes, this);
    dialog.ProfilesChanged = [this] { m_logic.RefreshProfileMenu(); };
    if (auto* tabs = dialog.findChild<QTabWidget*>("sstDetails")) tabs->setCurrentIndex(page);
    RunDialog(dialog);
    m_logic.RefreshProfileMenu();
    Refresh();
}

void frmMain::mnuInfoAbout_Click() {
    desktop::frmAbout dialog(m_logic.Settings().KeepOnTop == 1, this);
    RunDialog(dialog);
}

void frmMain::mnuInfoHelp_Click() {
    // The help file sits one folder above the program folder, as it always has.
    const QString file = desktop::FromBytes(m_logic.Settings().AppPath) + "../Guildkit.chm";
    if (QFileInfo::exists(file)) {
        OpenUrl(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
        return;
    }
    // Without it, the program's own documentation.
    const QString docs = desktop::ProgramDocumentation(QCoreApplication::applicationDirPath());
    if (!docs.isEmpty()) {
        OpenUrl(QUrl::fromLocalFile(docs));
        return;
    }
    m_boxes.Show(this, "Help", QString("The help file %1 was not found.").arg(QFileInfo(file).absoluteFilePath()));
}

void frmMain::cmdAssignPlayers_Click() {
    desktop::frmAssignPlayers dialog(m_logic.Game(), m_logic.Settings().KeepOnTop == 1, this);
    RunDialog(dialog);
    m_logic.RefreshDisplay();
    Refresh();
}

void frmMain::cmdCorrectScore_Click() {
    auto& state = m_logic.ReportState();
    desktop::frmCorrectScore dialog(m_logic.Game(), state.PrevScoreRed, state.PrevScoreBlue, m_boxes,
                                    m_logic.Settings().KeepOnTop == 1, this);
    RunDialog(dialog);
    Refresh();
}

} // namespace tallybot::app
