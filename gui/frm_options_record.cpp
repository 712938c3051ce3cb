// frmOptions: copying between the settings record and the controls.
#include "app/app_settings.h"
#include "base/vb_convert.h"
#include "gui/box_validation.h"
#include "gui/colour_boxes.h"
#include "gui/extras_page.h"
#include "gui/frm_options.h"
#include "gui/message_boxes.h"
#include "gui/preview_box.h"

#include <optional>

#include <QCheckBox>
#include <QLineEdit>
#include <QTabWidget>

namespace tallybot::desktop {

namespace {

using app::AppSettings;

struct FlagBox {
    const char* name;
    int AppSettings::*load;
    int AppSettings::*store;
};

// The short-server-info box is shown from AllowSServerInfo but stored into AllowServInfo after the
// server-info box, so it wins there and AllowSServerInfo never changes here. Kept as it always was.
const FlagBox kFlagBoxes[] = {
    {"chkMinToTray", &AppSettings::MinToTray, &AppSettings::MinToTray},
    {"chkKeepOnTop", &AppSettings::KeepOnTop, &AppSettings::KeepOnTop},
    {"chkRemWinPos", &AppSettings::RemWinPos, &AppSettings::RemWinPos},
    {"chkIRCTimeStamp", &AppSettings::IrcTimeStamp, &AppSettings::IrcTimeStamp},
    {"chkShowPing", &AppSettings::ShowPing, &AppSettings::ShowPing},
    {"chkPerformEnable", &AppSettings::PerformEnable, &AppSettings::PerformEnable},
    {"chkOnJoinEnabled", &AppSettings::OnJoinEnabled, &AppSettings::OnJoinEnabled},
    {"chkNoticeEnabled", &AppSettings::NoticeEnabled, &AppSettings::NoticeEnabled},
    {"chkDoLog", &AppSettings::DoLog, &AppSettings::DoLog},
    {"chkGameLogTimeStamp", &AppSettings::GameLogTimeStamp, &AppSettings::GameLogTimeStamp},
    {"chkLogInclDate", &AppSettings::LogInclDate, &AppSettings::LogInclDate},
    {"chkReconnect", &AppSettings::Reconnect, &AppSettings::Reconnect},
    {"chkAllowAbout", &AppSettings::AllowAbout, &AppSettings::AllowAbout},
    {"chkAllowInfo", &AppSettings::AllowInfo, &AppSettings::AllowInfo},
    {"chkAllowUserComm", &AppSettings::AllowUserComm, &AppSettings::AllowUserComm},
    {"chkAllowPlayerInfo", &AppSettings::AllowPlayerInfo, &AppSettings::AllowPlayerInfo},
    {"chkAllowServerInfo", &AppSettings::AllowServInfo, &AppSettings::AllowServInfo},
    {"chkAllowShortServInfo", &AppSettings::AllowSServerInfo, &AppSettings::AllowServInfo},
    {"chkAllowTeamInfo", &AppSettings::AllowTeamInfo, &AppSettings::AllowTeamInfo},
    {"chkAllowShortPlayerInfo", &AppSettings::AllowSPlayerInfo, &AppSettings::AllowSPlayerInfo},
    {"chkAllowShortTeamInfo", &AppSettings::AllowSTeamInfo, &AppSettings::AllowSTeamInfo},
    {"chkAllowCustom", &AppSettings::AllowCustom, &AppSettings::AllowCustom},
    {"chkCommandParameter", &AppSettings::CommandParameter, &AppSettings::CommandParameter},
};

struct TextBox {
    const char* name;
    std::string AppSettings::*field;
};

const TextBox kTextBoxes[] = {
    {"txtIRCIdentEmail", &AppSettings::IdentEmail}, {"txtIRCRealName", &AppSettings::RealName},
    {"txtPerformCmd", &AppSettings::PerformCmd},    {"txtOnJoinMsg", &AppSettings::OnJoinMessage},
    {"txtNoticeMsg", &AppSettings::NoticeMsg},      {"txtLogFolder", &AppSettings::LogFolder},
};

const char* const kOptionsTitle = "Options";

// The label colour is written with two digits below 10, the value colour without padding; the
// dialog reads both back from the second character on.
std::string ExtColourPrefix(int number) {
    return std::string("\x03") + (number < 10 ? "0" : "") + std::to_string(number);
}
std::string InfoColourPrefix(int number) {
    return "\x03" + std::to_string(number);
}

} // namespace

void frmOptions::LoadFromRecord() {
    for (const auto& flag : kFlagBoxes)
        findChild<QCheckBox*>(flag.name)->setChecked(m_settings.*flag.load == 1);
    for (const auto& text : kTextBoxes) {
        auto* box = findChild<QLineEdit*>(text.name);
        box->setText(FromBytes(m_settings.*text.field));
        box->setCursorPosition(0); // a long template shows its beginning
    }
    findChild<QLineEdit*>("txtDefGamPort")->setText(QString::number(m_settings.DefaultPort));
    findChild<QLineEdit*>("txtGamQueryTime")->setText(QString::number(m_settings.QueryTime));
    findChild<QLineEdit*>("txtIRCSendDelay")->setText(QString::number(m_settings.SendDelay));
    m_extColour->Choose(ColourNumberOf(m_settings.ExtTextCol));
    m_infoColour->Choose(ColourNumberOf(m_settings.InfoTextCol));
    m_extras->Load(m_settings.Extras);
    RefreshPreviews();
}

bool frmOptions::Confirm() {
    if (!m_validator->CheckAll()) return false;
    // Every number is converted before anything is stored, so a refusal leaves the record whole.
    const auto text = [this](const char* name) { return ToBytes(findChild<QLineEdit*>(name)->text()); };
    std::int16_t queryTime = 0;
    std::uint8_t sendDelay = 0;
    std::int32_t defaultPort = 0;
    try {
        queryTime = vb::CInt(text("txtGamQueryTime"));
    } catch (const vb::VbError&) {
        m_boxes.Show(this, kOptionsTitle, "The query interval must be a whole number from 0 to 32000.");
        return false;
    }
    try {
        sendDelay = vb::CByte(text("txtIRCSendDelay"));
    } catch (const vb::VbError&) {
        m_boxes.Show(this, kOptionsTitle, "The send delay must be a whole number from 0 to 255.");
        return false;
    }
    try {
        defaultPort = vb::CLng(vb::Val(text("txtDefGamPort")));
    } catch (const vb::VbError&) {
        m_boxes.Show(this, kOptionsTitle, "The default port is too large.");
        return false;
    }
    if (const auto refused = m_extras->Check()) {
        m_tabs->setCurrentWidget(m_extras);
        m_boxes.Show(this, kOptionsTitle, *refused);
        return false;
    }
    StoreToRecord(queryTime, sendDelay, defaultPort);
    m_extras->Store(m_settings.Extras);
    return true;
}

void frmOptions::StoreToRecord(std::int16_t queryTime, std::uint8_t sendDelay, std::int32_t defaultPort) {
    for (const auto& flag : kFlagBoxes)
        m_settings.*flag.store = findChild<QCheckBox*>(flag.name)->isChecked() ? 1 : 0;
    for (const auto& text : kTextBoxes)
        m_settings.*text.field = ToBytes(findChild<QLineEdit*>(text.name)->text());
    m_settings.QueryTime = queryTime;
    m_settings.SendDelay = sendDelay;
    m_settings.DefaultPort = defaultPort;
    if (m_extColour->Chosen() >= 0) m_settings.ExtTextCol = ExtColourPrefix(m_extColour->Chosen());
    if (m_infoColour->Chosen() >= 0) m_settings.InfoTextCol = InfoColourPrefix(m_infoColour->Chosen());
}

void frmOptions::RefreshPreviews() {
    if (!m_onJoinPreview || !m_noticePreview || !m_colourPreview) return;
    // The previews use the colours chosen here, not yet stored.
    app::AppSettings shown = m_settings;
    if (m_extColour->Chosen() >= 0) shown.ExtTextCol = ExtColourPrefix(m_extColour->Chosen());
    if (m_infoColour->Chosen() >= 0) shown.InfoTextCol = InfoColourPrefix(m_infoColour->Chosen());
    PreviewTemplate(*m_colourPreview, shown, "$ec$Map: $ic$%map%$ec$, players: $ic$%npl%$ec$/$ic$%mpl%");
    PreviewTemplate(*m_onJoinPreview, shown, ToBytes(findChild<QLineEdit*>("txtOnJoinMsg")->text()));
    PreviewTemplate(*m_noticePreview, shown, ToBytes(findChild<QLineEdit*>("txtNoticeMsg")->text()));
}

} // namespace tallybot::desktop
