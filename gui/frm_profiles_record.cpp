// frmProfiles: between the profile table, the editor's controls and the profile files.
#include "app/app_settings.h"
#include "base/vb_convert.h"
#include "gui/box_validation.h"
#include "gui/frm_profiles.h"
#include "gui/message_boxes.h"
#include "gui/preview_box.h"
#include "profiles/profile_editor.h"
#include "profiles/profile_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QSpinBox>

namespace tallybot::desktop {

namespace {

using profiles::GameProfile;

struct FlagBox {
    const char* name;
    int GameProfile::*field;
};
const FlagBox kFlags[] = {
    {"chkUseCustom", &GameProfile::UseCustom},
    {"chkAdvanced", &GameProfile::Advanced},
    {"chkAutoTeams", &GameProfile::AutoTeams},
    {"chkStatusPosting", &GameProfile::StatusPosting},
    {"chkPostScoreChange", &GameProfile::PostScoreChange},
    {"chkInterval", &GameProfile::Interval},
};

struct TextBox {
    const char* name;
    std::string GameProfile::*field;
};
const TextBox kTexts[] = {
    {"txtDescription", &GameProfile::Description}, {"txtGameName", &GameProfile::GameName},
    {"txtGameType", &GameProfile::GameType},       {"txtMessageStart", &GameProfile::MessageStart},
    {"txtCustomMessage", &GameProfile::Message},   {"txtMessageEnd", &GameProfile::MessageEnd},
};

const char* const kEditorTitle = "Game profiles";

// Names become file names: no folder parts, nothing the file system refuses.
bool UsableProfileName(const QString& name) {
    if (name.trimmed().isEmpty() || name.startsWith('.')) return false;
    for (const QChar c : name)
        if (QString("\\/:*?\"<>|").contains(c) || c.unicode() < 32) return false;
    return true;
}

} // namespace

void frmProfiles::ShowProfile(int index) {
    if (index < 1 || index > m_settings.Profiles.ProfileCount) {
        m_index = 0;
        return;
    }
    m_index = index;
    m_loading = true;
    const GameProfile& p = m_settings.Profiles.Entries[static_cast<std::size_t>(index)];
    for (const auto& flag : kFlags)
        findChild<QCheckBox*>(flag.name)->setChecked(p.*flag.field == 1);
    for (const auto& text : kTexts) {
        auto* box = findChild<QLineEdit*>(text.name);
        box->setText(FromBytes(p.*text.field));
        box->setCursorPosition(0); // long descriptions and templates show their beginning
    }
    auto* engine = findChild<QComboBox*>("cmbEngine");
    engine->setCurrentIndex(p.Engine >= 0 && p.Engine < engine->count() ? p.Engine : 0);
    findChild<QSpinBox*>("spnScoring")->setValue(p.Scoring);
    findChild<QLineEdit*>("txtScorePerCap")->setText(QString::number(p.ScorePerCap));
    findChild<QLineEdit*>("txtIntervalTime")->setText(QString::number(p.IntervalTime));
    auto* info = findChild<QComboBox*>("cmbIntervalInfo");
    info->setCurrentIndex(p.IntervalInfo >= 0 && p.IntervalInfo < info->count() ? p.IntervalInfo : 0);
    {
        const QSignalBlocker block(m_list);
        m_list->setCurrentRow(index - 1);
    }
    RefreshPreviews();
    m_loading = false;
    m_dirty = false;
}

bool frmProfiles::ResolveUnsavedEdits() {
    if (!m_dirty || m_index < 1) return true;
    const auto& entry = m_settings.Profiles.Entries[static_cast<std::size_t>(m_index)];
    const QString question =
        QString("The profile \"%1\" has changes that are not saved. Save them?").arg(FromBytes(entry.ProfileName));
    switch (m_boxes.AskSaveChanges(this, kEditorTitle, question)) {
    case SaveChoice::Save:
        return SaveCurrent();
    case SaveChoice::Discard:
        m_dirty = false;
        return true;
    case SaveChoice::Cancel:
        break;
    }
    return false;
}

void frmProfiles::done(int result) {
    if (ResolveUnsavedEdits()) QDialog::done(result);
}

bool frmProfiles::Collect(GameProfile& profile) {
    if (!m_validator->CheckAll()) return false;
    std::int32_t scorePerCap = 0;
    std::int32_t intervalTime = 0;
    try {
        scorePerCap = vb::CLng(ToBytes(findChild<QLineEdit*>("txtScorePerCap")->text()));
        intervalTime = vb::CLng(ToBytes(findChild<QLineEdit*>("txtIntervalTime")->text()));
    } catch (const vb::VbError&) {
        m_boxes.Show(this, kEditorTitle, "Points per capture and the interval must be whole numbers.");
        return false;
    }
    for (const auto& flag : kFlags)
        profile.*flag.field = findChild<QCheckBox*>(flag.name)->isChecked() ? 1 : 0;
    for (const auto& text : kTexts)
        profile.*text.field = ToBytes(findChild<QLineEdit*>(text.name)->text());
    profile.Engine = findChild<QComboBox*>("cmbEngine")->currentIndex();
    profile.Scoring = findChild<QSpinBox*>("spnScoring")->value();
    profile.ScorePerCap = scorePerCap;
    profile.IntervalTime = intervalTime;
    profile.IntervalInfo = findChild<QComboBox*>("cmbIntervalInfo")->currentIndex();
    return true;
}

bool frmProfiles::NewProfile() {
    auto& table = m_settings.Profiles;
    if (table.ProfileCount >= profiles::kMaxProfiles) {
        m_boxes.Show(this, kEditorTitle, "Tallybot keeps at most 20 profiles. Delete one before creating another.");
        return false;
    }
    const auto name = m_boxes.AskText(this, profiles::kNewProfileTitle, profiles::kNewProfilePrompt);
    if (!name || name->isEmpty()) return false;
    if (!UsableProfileName(*name)) {
        m_boxes.Show(this, kEditorTitle, "A profile name cannot contain any of \\ / : * ? \" < > |.");
        return false;
    }
    // The new profile starts with whatever the editor shows now, and is written at once.
    const int index = table.ProfileCount + 1;
    GameProfile profile = profiles::ClearedProfile();
    if (!Collect(profile)) return false;
    profile.ProfileName = ToBytes(*name);
    profile.FileName = profiles::NewProfileFileName(profile.ProfileName);
    table.Entries[static_cast<std::size_t>(index)] = profile;
    profiles::SaveProfile(m_settings, profile.FileName, index);
    Reload(profile.FileName);
    return true;
}

bool frmProfiles::SaveCurrent() {
    if (m_index < 1) return false;
    GameProfile& entry = m_settings.Profiles.Entries[static_cast<std::size_t>(m_index)];
    GameProfile edited = entry;
    if (!Collect(edited)) return false;
    entry = edited;
    profiles::SaveProfile(m_settings, entry.FileName, m_index);
    m_dirty = false;
    if (ProfilesChanged) ProfilesChanged();
    return true;
}

bool frmProfiles::DeleteCurrent() {
    if (m_index < 1) return false;
    const GameProfile entry = m_settings.Profiles.Entries[static_cast<std::size_t>(m_index)];
    if (profiles::IsProtectedProfile(entry.ProfileName)) {
        m_boxes.Show(this, kEditorTitle, profiles::kDefaultNotDeleted);
        return false;
    }
    if (!m_boxes.AskYesNo(this, profiles::kDeleteTitle, profiles::kDeleteQuestion)) return false;
    profiles::DeleteProfile(m_settings, entry.FileName);
    Reload({});
    return true;
}

void frmProfiles::Reload(const std::string& selectFile) {
    auto& table = m_settings.Profiles;
    // Reloading renumbers the table; the current profile stays the same file when it still exists.
    const std::string currentFile =
        table.CurrentProfile >= 1 ? table.Entries[static_cast<std::size_t>(table.CurrentProfile)].FileName : "";
    const bool firstLoad = !isVisible() && m_list->count() == 0 && selectFile.empty();
    if (!firstLoad) {
        profiles::LoadAllProfiles(m_settings);
        table.CurrentProfile = 0;
        for (int i = 1; i <= table.ProfileCount && !currentFile.empty(); ++i)
            if (table.Entries[static_cast<std::size_t>(i)].FileName == currentFile) table.CurrentProfile = i;
    }
    // The editor opens on the profile in use, so the operator edits what the bot posts with.
    const bool currentListed = table.CurrentProfile >= 1 && table.CurrentProfile <= table.ProfileCount;
    int select = currentListed ? table.CurrentProfile : (table.ProfileCount >= 1 ? 1 : 0);
    {
        const QSignalBlocker block(m_list);
        m_list->clear();
        for (int i = 1; i <= table.ProfileCount; ++i) {
            const auto& entry = table.Entries[static_cast<std::size_t>(i)];
            m_list->addItem(FromBytes(entry.ProfileName));
            if (!selectFile.empty() && entry.FileName == selectFile) select = i;
        }
    }
    ShowProfile(select);
    if (!firstLoad && ProfilesChanged) ProfilesChanged();
}

void frmProfiles::RefreshPreviews() {
    if (!m_startPreview || !m_customPreview || !m_endPreview) return;
    PreviewTemplate(*m_startPreview, m_settings, ToBytes(findChild<QLineEdit*>("txtMessageStart")->text()));
    PreviewTemplate(*m_customPreview, m_settings, ToBytes(findChild<QLineEdit*>("txtCustomMessage")->text()));
    PreviewTemplate(*m_endPreview, m_settings, ToBytes(findChild<QLineEdit*>("txtMessageEnd")->text()));
}

} // namespace tallybot::desktop
