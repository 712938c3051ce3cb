#include "gui/frm_profiles.h"

#include "app/app_settings.h"
#include "gui/box_validation.h"
#include "gui/frm_modifiers.h"
#include "gui/message_boxes.h"
#include "gui/ok_cancel_buttons.h"
#include "gui/preview_box.h"
#include "query/game_state.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tallybot::desktop {

namespace {

template <class W> W* Named(W* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

QPushButton* Button(const char* name, const QString& caption) {
    return Named(new QPushButton(caption), name);
}

} // namespace

frmProfiles::frmProfiles(app::AppSettings& settings, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_boxes(boxes), m_list(Named(new QListWidget, "lstProfiles")),
      m_tabs(Named(new QTabWidget, "sstDetails")) {
    setObjectName("frmProfiles");
    setWindowTitle("Game profiles");
    m_tabs->setParent(this); // so findChild reaches the pages before the layout exists
    if (m_settings.KeepOnTop == 1) setWindowFlag(Qt::WindowStaysOnTopHint);
    m_validator = new BoxValidator(*m_tabs, m_boxes, this);
    m_modifiers = new frmModifiers(m_settings, this);

    m_tabs->addTab(BuildGeneralPage(), "General");
    m_tabs->addTab(BuildMessagesPage(), "Match messages");
    m_tabs->addTab(BuildCustomPage(), "Custom message");
    m_tabs->addTab(BuildScoringPage(), "Scoring");
    m_tabs->addTab(BuildPostingPage(), "Posting");
    m_validator->Watch(findChild<QLineEdit*>("txtScorePerCap"));
    m_validator->Watch(findChild<QLineEdit*>("txtIntervalTime"));

    auto* left = new QVBoxLayout;
    auto* listLabel = new QLabel("Profi&les:");
    listLabel->setBuddy(m_list);
    left->addWidget(listLabel);
    left->addWidget(m_list, 1);
    auto* buttons = new QHBoxLayout;
    auto* newButton = Button("cmdNew", "&New...");
    auto* saveButton = Button("cmdSave", "&Save");
    auto* deleteButton = Button("cmdDelete", "&Delete");
    buttons->addWidget(newButton);
    buttons->addWidget(saveButton);
    buttons->addWidget(deleteButton);
    left->addLayout(buttons);
    m_list->setMinimumWidth(180);

    auto* closeButton = Button("cmdClose", "Close");
    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(closeButton);

    auto* top = new QHBoxLayout;
    top->addLayout(left);
    top->addWidget(m_tabs, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
    resize(760, 480);
    MakeDefaultButton(*this, *closeButton);

    connect(newButton, &QPushButton::clicked, this, [this] { NewProfile(); });
    connect(saveButton, &QPushButton::clicked, this, [this] { SaveCurrent(); });
    connect(deleteButton, &QPushButton::clicked, this, [this] { DeleteCurrent(); });
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (ResolveUnsavedEdits()) {
            ShowProfile(row + 1);
        } else {
            const QSignalBlocker block(m_list);
            m_list->setCurrentRow(m_index - 1);
        }
    });
    const auto edited = [this] { m_dirty = m_dirty || !m_loading; };
    for (auto* box : m_tabs->findChildren<QLineEdit*>())
        connect(box, &QLineEdit::textChanged, this, edited);
    for (auto* box : m_tabs->findChildren<QCheckBox*>())
        connect(box, &QCheckBox::toggled, this, edited);
    for (auto* box : m_tabs->findChildren<QComboBox*>())
        connect(box, &QComboBox::currentIndexChanged, this, edited);
    for (auto* box : m_tabs->findChildren<QSpinBox*>())
        connect(box, &QSpinBox::valueChanged, this, edited);
    Reload({});
}

QWidget* frmProfiles::BuildGeneralPage() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->addRow("Desc&ription:", Named(new QLineEdit, "txtDescription"));
    auto* engine = Named(new QComboBox, "cmbEngine");
    engine->addItem("Any engine (default profile)");
    for (int id = 1; id <= query::kEngineCount; ++id)
        engine->addItem(FromBytes(query::EngineCode(id)));
    // The list index is the engine id, so the A2S engine sits right after the classic seventeen.
    engine->addItem(QStringLiteral("A2S"));
    form->addRow("&Engine:", engine);
    form->addRow("&Game name:", Named(new QLineEdit, "txtGameName"));
    form->addRow("Game &type:", Named(new QLineEdit, "txtGameType"));
    auto* hint = new QLabel("An empty game name or type matches every server of the engine.");
    hint->setWordWrap(true);
    form->addRow(hint);
    return page;
}

QLineEdit* frmProfiles::TemplateRow(QWidget* page, const char* name, const char* previewName, QTextEdit** preview) {
    auto* layout = static_cast<QVBoxLayout*>(page->layout());
    auto* row = new QHBoxLayout;
    auto* text = Named(new QLineEdit, name);
    auto* pick = new QPushButton("Placeholders...");
    pick->setObjectName(QString("cmdModifiers_%1").arg(name));
    connect(pick, &QPushButton::clicked, this, [this, text] { ShowModifiers(text); });
    connect(text, &QLineEdit::textChanged, this, [this] { RefreshPreviews(); });
    row->addWidget(text, 1);
    row->addWidget(pick);
    layout->addLayout(row);
    *preview = MakePreviewBox(previewName);
    layout->addWidget(*preview);
    return text;
}

QWidget* frmProfiles::BuildMessagesPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel("Posted when a match starts:"));
    TemplateRow(page, "txtMessageStart", "rtfMessageStartPreview", &m_startPreview);
    layout->addWidget(new QLabel("Posted when a match ends:"));
    TemplateRow(page, "txtMessageEnd", "rtfMessageEndPreview", &m_endPreview);
    layout->addStretch();
    return page;
}

QWidget* frmProfiles::BuildCustomPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel("The custom message (!cust, score changes, interval posts):"));
    TemplateRow(page, "txtCustomMessage", "rtfCustomPreview", &m_customPreview);
    layout->addWidget(Named(new QCheckBox("Use the custom message for score changes"), "chkUseCustom"));
    layout->addStretch();
    return page;
}

QWidget* frmProfiles::BuildScoringPage() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->addRow(Named(new QCheckBox("The server reports team scores and match time"), "chkAdvanced"));
    form->addRow(Named(new QCheckBox("The server reports the players' teams"), "chkAutoTeams"));
    auto* scoring = Named(new QSpinBox, "spnScoring");
    scoring->setRange(0, 255);
    form->addRow("Scoring mode (2: flag captures):", scoring);
    form->addRow("&Points per capture:", Named(new QLineEdit, "txtScorePerCap"));
    return page;
}

QWidget* frmProfiles::BuildPostingPage() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->addRow(Named(new QCheckBox("Post match status messages"), "chkStatusPosting"));
    form->addRow(Named(new QCheckBox("Post every change of the score"), "chkPostScoreChange"));
    form->addRow(Named(new QCheckBox("Post information at intervals"), "chkInterval"));
    form->addRow("&Interval (s):", Named(new QLineEdit, "txtIntervalTime"));
    auto* info = Named(new QComboBox, "cmbIntervalInfo");
    info->addItems({"Server information", "Short server information", "Player information", "Short player information",
                    "Team information", "Short team information", "Custom message"});
    form->addRow("Interval p&ost:", info);
    return page;
}

void frmProfiles::ShowModifiers(QLineEdit* target) {
    m_modifiers->SetTarget(target);
    m_modifiers->show();
    m_modifiers->raise();
}

} // namespace tallybot::desktop
