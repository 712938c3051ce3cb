#include "gui/frm_options.h"

#include "app/app_settings.h"
#include "gui/box_validation.h"
#include "gui/colour_boxes.h"
#include "gui/extras_page.h"
#include "gui/frm_modifiers.h"
#include "gui/message_boxes.h"
#include "gui/ok_cancel_buttons.h"
#include "gui/preview_box.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tallybot::desktop {

frmOptions::frmOptions(app::AppSettings& settings, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_boxes(boxes), m_tabs(new QTabWidget) {
    setObjectName("frmOptions");
    setWindowTitle("Options");
    if (m_settings.KeepOnTop == 1) setWindowFlag(Qt::WindowStaysOnTopHint);
    m_tabs->setParent(this); // so findChild reaches the pages before the layout exists
    m_tabs->setObjectName("sstOptions");
    m_validator = new BoxValidator(*m_tabs, m_boxes, this);
    m_modifiers = new frmModifiers(m_settings, this);

    m_tabs->addTab(BuildGeneralPage(), "General");
    m_tabs->addTab(BuildIrcPage(), "IRC");
    m_tabs->addTab(BuildGamePage(), "Game server");
    m_tabs->addTab(BuildCommandsPage(), "Channel commands");
    m_tabs->addTab(BuildOnJoinPage(), "On join");
    m_extras = new ExtrasPage;
    m_extras->setObjectName("pagExtras");
    m_tabs->addTab(m_extras, "Extras");
    for (const char* name :
         {"txtIRCIdentEmail", "txtIRCRealName", "txtDefGamPort", "txtGamQueryTime", "txtIRCSendDelay"})
        m_validator->Watch(findChild<QLineEdit*>(name));

    auto* buttons = OkCancelButtons(this, [this] { return Confirm(); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(buttons);
    resize(620, 480);
    MakeDefaultButton(*this, *findChild<QPushButton*>("cmdOK"));
    LoadFromRecord();
}

QCheckBox* frmOptions::Check(const char* name, const QString& caption) {
    auto* box = new QCheckBox(caption);
    box->setObjectName(name);
    return box;
}

QLineEdit* frmOptions::Line(const char* name) {
    auto* line = new QLineEdit;
    line->setObjectName(name);
    return line;
}

QWidget* frmOptions::BuildGeneralPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* window = new QGroupBox("Main window");
    auto* inner = new QVBoxLayout(window);
    inner->addWidget(Check("chkMinToTray", "Minimise to the notification area"));
    inner->addWidget(Check("chkKeepOnTop", "Keep the windows on top of others"));
    inner->addWidget(Check("chkRemWinPos", "Remember the window position"));
    layout->addWidget(window);
    layout->addStretch();
    return page;
}

QWidget* frmOptions::BuildIrcPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* identity = new QGroupBox("Identity");
    auto* form = new QFormLayout(identity);
    form->addRow("&Ident / e-mail:", Line("txtIRCIdentEmail"));
    form->addRow("&Real name:", Line("txtIRCRealName"));
    layout->addWidget(identity);

    auto* pane = new QGroupBox("Chat pane and connection");
    auto* paneLayout = new QVBoxLayout(pane);
    paneLayout->addWidget(Check("chkIRCTimeStamp", "Show a time stamp in front of each line"));
    paneLayout->addWidget(Check("chkShowPing", "Show the server's PING/PONG traffic"));
    paneLayout->addWidget(Check("chkPerformEnable", "Perform these commands after connecting:"));
    paneLayout->addWidget(Line("txtPerformCmd"));
    layout->addWidget(pane);

    auto* colours = new QGroupBox("Colours of posted messages");
    auto* colourForm = new QFormLayout(colours);
    m_extColour = new ColourBoxes("picExtTextCol");
    m_infoColour = new ColourBoxes("picInfoTextCol");
    m_colourPreview = MakePreviewBox("rtfColourPreview");
    colourForm->addRow("Labels ($ec$):", m_extColour);
    colourForm->addRow("Values ($ic$):", m_infoColour);
    colourForm->addRow("Preview:", m_colourPreview);
    m_extColour->Changed = [this](int) { RefreshPreviews(); };
    m_infoColour->Changed = [this](int) { RefreshPreviews(); };
    layout->addWidget(colours);
    layout->addStretch();
    return page;
}

QWidget* frmOptions::BuildGamePage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* query = new QGroupBox("Query");
    auto* form = new QFormLayout(query);
    form->addRow("Default &port:", Line("txtDefGamPort"));
    form->addRow("&Query interval (ms):", Line("txtGamQueryTime"));
    form->addRow("&Send delay for answers (s):", Line("txtIRCSendDelay"));
    form->addRow(Check("chkReconnect", "Restart the query at once after repeated errors"));
    layout->addWidget(query);

    auto* log = new QGroupBox("Game data log");
    auto* logForm = new QFormLayout(log);
    logForm->addRow(Check("chkDoLog", "Log the raw server data to files"));
    auto* folderRow = new QHBoxLayout;
    auto* folder = Line("txtLogFolder");
    auto* browse = new QPushButton("Browse...");
    browse->setObjectName("cmdLogFolder");
    connect(browse, &QPushButton::clicked, this, [this, folder] {
        const QString chosen = QFileDialog::getExistingDirectory(this, "Folder of the game data logs", folder->text());
        if (!chosen.isEmpty()) folder->setText(chosen);
    });
    folderRow->addWidget(folder, 1);
    folderRow->addWidget(browse);
    logForm->addRow("Folder:", folderRow);
    logForm->addRow(Check("chkGameLogTimeStamp", "Time stamp in front of each entry"));
    logForm->addRow(Check("chkLogInclDate", "Include the date"));
    layout->addWidget(log);
    layout->addStretch();
    return page;
}

QWidget* frmOptions::BuildCommandsPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* general = new QGroupBox("Channel users");
    auto* generalLayout = new QVBoxLayout(general);
    generalLayout->addWidget(Check("chkAllowUserComm", "Answer the commands of channel users"));
    generalLayout->addWidget(Check("chkCommandParameter", "Commands accept a parameter"));
    layout->addWidget(general);

    auto* commands = new QGroupBox("Answered commands");
    auto* grid = new QGridLayout(commands);
    grid->addWidget(Check("chkAllowAbout", "!about"), 0, 0);
    grid->addWidget(Check("chkAllowInfo", "!info"), 0, 1);
    grid->addWidget(Check("chkAllowCustom", "!cust"), 0, 2);
    grid->addWidget(Check("chkAllowServerInfo", "!sinfo"), 1, 0);
    grid->addWidget(Check("chkAllowPlayerInfo", "!pinfo"), 1, 1);
    grid->addWidget(Check("chkAllowTeamInfo", "!tinfo"), 1, 2);
    grid->addWidget(Check("chkAllowShortServInfo", "!ssinfo"), 2, 0);
    grid->addWidget(Check("chkAllowShortPlayerInfo", "!spinfo"), 2, 1);
    grid->addWidget(Check("chkAllowShortTeamInfo", "!stinfo"), 2, 2);
    layout->addWidget(commands);
    layout->addStretch();
    return page;
}

QWidget* frmOptions::BuildOnJoinPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    struct Block {
        const char* title;
        const char* check;
        const char* checkCaption;
        const char* text;
        const char* button;
        QTextEdit** preview;
        const char* previewName;
    };
    const Block blocks[] = {
        {"When Tallybot has joined the channel", "chkOnJoinEnabled", "Post this message:", "txtOnJoinMsg",
         "cmdOnJoinModifiers", &m_onJoinPreview, "rtfOnJoinPreview"},
        {"When another user joins", "chkNoticeEnabled", "Send this notice to the user:", "txtNoticeMsg",
         "cmdNoticeModifiers", &m_noticePreview, "rtfNoticePreview"},
    };
    for (const auto& block : blocks) {
        auto* group = new QGroupBox(block.title);
        auto* inner = new QVBoxLayout(group);
        inner->addWidget(Check(block.check, block.checkCaption));
        auto* row = new QHBoxLayout;
        auto* text = Line(block.text);
        auto* pick = new QPushButton("Placeholders...");
        pick->setObjectName(block.button);
        connect(pick, &QPushButton::clicked, this, [this, text] { ShowModifiers(text); });
        connect(text, &QLineEdit::textChanged, this, [this] { RefreshPreviews(); });
        row->addWidget(text, 1);
        row->addWidget(pick);
        inner->addLayout(row);
        *block.preview = MakePreviewBox(block.previewName);
        inner->addWidget(*block.preview);
        layout->addWidget(group);
    }
    layout->addStretch();
    return page;
}

void frmOptions::ShowModifiers(QLineEdit* target) {
    m_modifiers->SetTarget(target);
    m_modifiers->show();
    m_modifiers->raise();
}

} // namespace tallybot::desktop
