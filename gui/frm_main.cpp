#include "gui/frm_main.h"

#include "app/logic/main_logic.h"
#include "gui/irc_pane_widget.h"
#include "gui/message_boxes.h"
#include "gui/tallybot_icon.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tallybot::app {

namespace {

template <class W> W* Named(W* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

QLabel* ValueLabel(const char* name) {
    auto* label = Named(new QLabel("N/A"), name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setStyleSheet("QLabel { font-weight: 600; }");
    return label;
}

} // namespace

frmMain::frmMain(MainLogic& logic, desktop::MessageBoxes& boxes, QWidget* parent)
    : QMainWindow(parent), m_logic(logic), m_boxes(boxes) {
    setObjectName("frmMain");
    setWindowIcon(desktop::TallybotIcon());
    RunDialog = [](QDialog& dialog) { dialog.exec(); };
    OpenUrl = [](const QUrl& url) { QDesktopServices::openUrl(url); };

    m_irc = new desktop::IrcPaneWidget;
    m_irc->Bind(m_logic.Irc());
    // The control keeps a user list only in its channel-client types.
    const int controlType = m_logic.Irc().Properties().ControlType;
    m_irc->Users().setVisible(controlType == 1 || controlType == 3);

    m_tabs = Named(new QTabWidget, "sstMain");
    m_tabs->addTab(BuildServerPage(), "Game server");
    m_tabs->addTab(BuildMatchPage(), "Match");
    m_tabs->setMinimumWidth(300);

    auto* chat = Named(new QGroupBox("IRC channel"), "fraIRC");
    auto* chatLayout = new QVBoxLayout(chat);
    chatLayout->addWidget(m_irc);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(chat);
    splitter->addWidget(m_tabs);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setChildrenCollapsible(false);

    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(BuildConnectionBar());
    layout->addWidget(splitter, 1);
    setCentralWidget(central);

    BuildMenus();
    BuildTray();
    // A DCC transfer the operator accepted reports its progress in the status line.
    m_logic.Irc().Events().DCCTransfer = [this](const std::string& path, std::uint64_t position, std::uint64_t size) {
        ShowDccProgress(path, position, size);
    };
    resize(kFirstWidth, kFirstHeight);
    setMinimumSize(kMinimumWidth, kMinimumHeight);
    Refresh();
}

frmMain::~frmMain() {
    m_logic.Irc().Events().DCCTransfer = nullptr;
    // The children go after this body: a box that loses the focus then must not reach the window.
    for (QLineEdit* edit : findChildren<QLineEdit*>())
        edit->disconnect(this);
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    // Below this width the two groups no longer fit beside each other.
    m_bar->setDirection(width() < 1040 ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

QComboBox* frmMain::HistoryBox(const char* name, HistoryCombo MainView::*combo) {
    auto* box = Named(new QComboBox, name);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    connect(box, &QComboBox::editTextChanged, this, [this, combo](const QString& text) {
        if (desktop::ToBytes(text) != (m_logic.View().*combo).Text) m_logic.SetIrcText(combo, desktop::ToBytes(text));
    });
    connect(box, &QComboBox::activated, this, [this, combo] { m_logic.cmbIRC_Commit(combo); });
    connect(box->lineEdit(), &QLineEdit::editingFinished, this, [this, combo] { m_logic.cmbIRC_Commit(combo); });
    // Enter in any of the four boxes connects, as the button would, once the box has committed.
    connect(box->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        QTimer::singleShot(0, this, [this] {
            const int state = m_logic.Settings().ConnState;
            if (m_logic.View().cmdIRCConnectionEnabled && state != 1 && state != 3) m_logic.cmdIRCConnection_Click();
        });
    });
    return box;
}

QWidget* frmMain::BuildConnectionBar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    m_bar = row;

    auto* irc = Named(new QGroupBox("IRC server"), "fraIRCConnection");
    auto* ircRow = new QHBoxLayout(irc);
    const struct {
        const char* name;
        const char* label;
        HistoryCombo MainView::*combo;
        int stretch;
    } boxes[] = {{"cmbIRCServer", "Ser&ver", &MainView::cmbIRCServer, 3},
                 {"cmbIRCPort", "Po&rt", &MainView::cmbIRCPort, 1},
                 {"cmbIRCChannel", "C&hannel", &MainView::cmbIRCChannel, 2},
                 {"cmbIRCNick", "&Nick", &MainView::cmbIRCNick, 2}};
    for (const auto& b : boxes) {
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        auto* label = new QLabel(b.label);
        auto* box = HistoryBox(b.name, b.combo);
        label->setBuddy(box);
        column->addWidget(label);
        box->setMinimumWidth(60 + 20 * b.stretch);
        column->addWidget(box);
        ircRow->addLayout(column, b.stretch);
    }
    auto* connectButton = Named(new QPushButton("&Connect"), "cmdIRCConnection");
    connectButton->setMinimumWidth(96);
    connect(connectButton, &QPushButton::clicked, this, [this] { m_logic.cmdIRCConnection_Click(); });
    ircRow->addWidget(connectButton, 0, Qt::AlignBottom);
    // A port is digits only: letters would end as "Invalid port 0" from the socket.
    irc->findChild<QComboBox*>("cmbIRCPort")->lineEdit()->setValidator(new QIntValidator(0, 65535, irc));
    row->addWidget(irc, 3);

    auto* game = Named(new QGroupBox("Game server"), "fraGamConnection");
    auto* gameRow = new QHBoxLayout(game);
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    auto* address = new QLabel("A&ddress (host:port)");
    column->addWidget(address);
    m_gamServer = Named(new QComboBox, "cmbGamServer");
    address->setBuddy(m_gamServer);
    m_gamServer->setEditable(true);
    m_gamServer->setInsertPolicy(QComboBox::NoInsert);
    m_gamServer->setMinimumWidth(150);
    connect(m_gamServer, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (desktop::ToBytes(text) != m_logic.View().Query.cmbGamServerText)
            m_logic.cmbGamServer_Change(desktop::ToBytes(text));
    });
    connect(m_gamServer, &QComboBox::activated, this, [this] { m_logic.cmbGamServer_Commit(); });
    connect(m_gamServer->lineEdit(), &QLineEdit::editingFinished, this, [this] { m_logic.cmbGamServer_Commit(); });
    // Enter in the address starts the query, as the button would; the box commits its text first.
    connect(m_gamServer->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        QTimer::singleShot(0, this, [this] {
            const int state = m_logic.Settings().ConnState;
            if (m_logic.View().cmdGamQueryEnabled && state != 2 && state != 3) m_logic.cmdGamQuery_Click();
        });
    });
    column->addWidget(m_gamServer);
    gameRow->addLayout(column, 1);
    auto* query = Named(new QPushButton("S&tart"), "cmdGamQuery");
    query->setMinimumWidth(80);
    connect(query, &QPushButton::clicked, this, [this] { m_logic.cmdGamQuery_Click(); });
    gameRow->addWidget(query, 0, Qt::AlignBottom);
    auto* status = Named(new QLabel("OFFLINE"), "lblQueryStatus");
    status->setAlignment(Qt::AlignCenter);
    status->setMinimumWidth(120);
    gameRow->addWidget(status, 0, Qt::AlignBottom);
    row->addWidget(game, 2);
    return bar;
}

QWidget* frmMain::BuildServerPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* frame = Named(new QGroupBox("Server"), "fraGamGeneral");
    auto* form = new QFormLayout(frame);
    form->addRow("Host name:", ValueLabel("lblHostname"));
    form->addRow("Game:", ValueLabel("lblGameName"));
    form->addRow("Map:", ValueLabel("lblMapname"));
    form->addRow("Time limit:", ValueLabel("lblTimelimit"));
    form->addRow("Players:", ValueLabel("lblPlayerInfo"));
    form->addRow("Team score:", ValueLabel("lblTeamScore"));
    layout->addWidget(frame);

    m_players = Named(new QTreeWidget, "lvwPlayers");
    m_players->setRootIsDecorated(false);
    m_players->setAlternatingRowColors(true);
    m_players->setHeaderLabels({"Name", "Score", "Ping", "Team"});
    m_players->header()->setStretchLastSection(false);
    m_players->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int c = 1; c < 4; ++c)
        m_players->header()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    layout->addWidget(m_players, 1);

    auto* profile = Named(new QPushButton("Profile: None"), "cmdProfiles");
    profile->setToolTip("Edit the game profiles");
    connect(profile, &QPushButton::clicked, this, [this] { mnuProfileEdit_Click(); });
    layout->addWidget(profile);
    return page;
}

QWidget* frmMain::BuildMatchPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* teams = Named(new QGroupBox("Team names"), "fraTeams");
    auto* form = new QFormLayout(teams);
    m_teamRed = Named(new QLineEdit, "txtTeamNameRed");
    m_teamBlue = Named(new QLineEdit, "txtTeamNameBlue");
    m_teamRed->setPlaceholderText("Red");
    m_teamBlue->setPlaceholderText("Blue");
    connect(m_teamRed, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_logic.View().txtTeamNameRed = desktop::ToBytes(text); });
    connect(m_teamBlue, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_logic.View().txtTeamNameBlue = desktop::ToBytes(text); });
    form->addRow("Red:", m_teamRed);
    form->addRow("Blue:", m_teamBlue);
    layout->addWidget(teams);

    auto* fixes = Named(new QGroupBox("Corrections"), "fraCorrections");
    auto* fixLayout = new QVBoxLayout(fixes);
    auto* assign = Named(new QPushButton("&Assign players to teams..."), "cmdAssignPlayers");
    auto* correct = Named(new QPushButton("Correct the &score..."), "cmdCorrectScore");
    connect(assign, &QPushButton::clicked, this, [this] { cmdAssignPlayers_Click(); });
    connect(correct, &QPushButton::clicked, this, [this] { cmdCorrectScore_Click(); });
    fixLayout->addWidget(assign);
    fixLayout->addWidget(correct);
    layout->addWidget(fixes);

    auto* post = Named(new QPushButton("&Post to channel"), "cmdInfoToIRC");
    connect(post, &QPushButton::clicked, this, [this, post] {
        if (m_postMenu) m_postMenu->popup(post->mapToGlobal(QPoint(0, post->height())));
    });
    layout->addWidget(post);
    layout->addStretch();
    return page;
}

} // namespace tallybot::app
