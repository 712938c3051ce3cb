// The options dialog against the settings record: OK, Cancel, the short-server-info quirk, the
// number conversions, field validation, the Extras page, the colour boxes, the preview and the
// placeholder picker.
#include "app/app_settings.h"
#include "app/settings_file.h"
#include "gui/box_validation.h"
#include "gui/extras_page.h"
#include "gui/frm_modifiers.h"
#include "gui/frm_options.h"
#include "gui/irc_palette.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/support/temp_folder.h"

#include <set>
#include <sstream>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

using desktop::frmOptions;

struct OptionsFixture : ::testing::Test {
    app::AppSettings settings;
    FakeMessageBoxes boxes;

    QLineEdit* Box(frmOptions& dlg, const char* name) { return dlg.findChild<QLineEdit*>(name); }
    QCheckBox* Check(frmOptions& dlg, const char* name) { return dlg.findChild<QCheckBox*>(name); }
    void Click(QWidget& dlg, const QString& name) { dlg.findChild<QAbstractButton*>(name)->click(); }
};

// Cancel stores nothing; OK stores texts, numbers (converted as typed) and flags; the short-info
// box lands in AllowServInfo after the server-info box, and AllowSServerInfo never moves.
TEST_F(OptionsFixture, OkStoresTextsNumbersAndFlagsCancelNothing) {
    const app::AppSettings before = settings;
    {
        frmOptions dlg(settings, boxes);
        Check(dlg, "chkMinToTray")->setChecked(false);
        Box(dlg, "txtIRCRealName")->setText("changed");
        Click(dlg, "cmdCancel");
        EXPECT_EQ(dlg.result(), QDialog::Rejected);
        EXPECT_EQ(settings.MinToTray, before.MinToTray);
        EXPECT_EQ(settings.RealName, before.RealName);
    }
    settings.AllowServInfo = 1;
    settings.AllowSServerInfo = 0;
    frmOptions dlg(settings, boxes);
    EXPECT_FALSE(Check(dlg, "chkAllowShortServInfo")->isChecked()); // shown from AllowSServerInfo
    Check(dlg, "chkAllowServerInfo")->setChecked(true);
    Check(dlg, "chkAllowShortServInfo")->setChecked(false);
    Check(dlg, "chkKeepOnTop")->setChecked(true);
    Check(dlg, "chkCommandParameter")->setChecked(true);
    Box(dlg, "txtIRCRealName")->setText("Tally Bot");
    Box(dlg, "txtOnJoinMsg")->setText("Hello \x02there");
    Box(dlg, "txtGamQueryTime")->setText("1500");
    Box(dlg, "txtIRCSendDelay")->setText("255");
    Box(dlg, "txtDefGamPort")->setText("2.7e4");
    Click(dlg, "cmdOK");
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(settings.AllowServInfo, 0);
    EXPECT_EQ(settings.AllowSServerInfo, 0);
    EXPECT_EQ(settings.KeepOnTop, 1);
    EXPECT_EQ(settings.CommandParameter, 1);
    EXPECT_EQ(settings.RealName, "Tally Bot");
    EXPECT_EQ(settings.OnJoinMessage, "Hello \x02there");
    EXPECT_EQ(settings.QueryTime, 1500);
    EXPECT_EQ(settings.SendDelay, 255);
    EXPECT_EQ(settings.DefaultPort, 27000);
}

// Leaving a box with a bad entry: the refusal, the page the tab strip turns to, the focus back in
// the box, the text left as typed. OK refuses such a box (or a number too big for its setting) and
// stores nothing.
TEST_F(OptionsFixture, BadEntriesAreRefusedOnLeavingAndOnOk) {
    struct Case {
        const char* box;
        const char* text;
        const char* message; // empty: accepted
        int page;
    };
    const char* const kNumber = "You did not enter a valid number. Please enter a valid value.";
    const Case leaving[] = {
        {"txtGamQueryTime", "32000", "", 0},
        {"txtGamQueryTime", "32001", "You did not enter a valid number. Please enter a valid value up to 32000.", 2},
        {"txtGamQueryTime", "", "You left the textbox empty. Please enter a value.", 2},
        {"txtIRCSendDelay", "1x", kNumber, 2},
        {"txtDefGamPort", "0", "", 0},
        {"txtDefGamPort", "port", kNumber, 2},
        {"txtIRCRealName", "12345", "You did not enter a valid text. Please enter a text.", 1},
        {"txtIRCRealName", "abc1", "", 0},
        {"txtIRCIdentEmail", "", "You left the textbox empty. Please enter a text.", 1},
    };
    for (const Case& c : leaving) {
        frmOptions dlg(settings, boxes);
        dlg.show();
        auto* tabs = dlg.findChild<QTabWidget*>("sstOptions");
        tabs->setCurrentIndex(0);
        boxes.shown.clear();
        Box(dlg, c.box)->setText(c.text);
        QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(Box(dlg, c.box), &leave);
        SCOPED_TRACE(std::string(c.box) + " " + c.text);
        EXPECT_EQ(boxes.LastText(), c.message);
        EXPECT_EQ(tabs->currentIndex(), c.page);
        if (*c.message == '\0') continue;
        EXPECT_EQ(boxes.shown[0].title, "Invalid entry");
        EXPECT_EQ(dlg.focusWidget(), Box(dlg, c.box));
        EXPECT_EQ(Box(dlg, c.box)->text(), c.text);
    }
    const Case onOk[] = {{"txtIRCSendDelay", "256", "", 0},
                         {"txtGamQueryTime", "-40000", "", 0},
                         {"txtIRCRealName", "99", "You did not enter a valid text. Please enter a text.", 1}};
    for (const Case& c : onOk) {
        const app::AppSettings before = settings;
        frmOptions dlg(settings, boxes);
        Box(dlg, "txtIRCRealName")->setText("someone else");
        Box(dlg, "txtGamQueryTime")->setText("2500");
        Box(dlg, c.box)->setText(c.text);
        boxes.shown.clear();
        Click(dlg, "cmdOK");
        SCOPED_TRACE(c.box);
        EXPECT_NE(dlg.result(), QDialog::Accepted);
        ASSERT_EQ(boxes.shown.size(), 1u);
        if (*c.message != '\0') EXPECT_EQ(boxes.LastText(), c.message);
        EXPECT_EQ(dlg.findChild<QTabWidget*>("sstOptions")->currentIndex(), c.page);
        EXPECT_EQ(settings.RealName, before.RealName);
        EXPECT_EQ(settings.QueryTime, before.QueryTime);
        EXPECT_EQ(settings.SendDelay, before.SendDelay);
    }
}

TEST_F(OptionsFixture, EnterInABoxBesideABrowseButtonPressesOk) {
    frmOptions dlg(settings, boxes);
    dlg.show();
    for (auto* button : dlg.findChildren<QPushButton*>()) // a default "Browse..." would open its dialog
        ASSERT_EQ(button->isDefault() || button->autoDefault(), button->objectName() == "cmdOK")
            << button->text().toStdString();
    dlg.findChild<QTabWidget*>("sstOptions")->setCurrentIndex(2);
    Box(dlg, "txtLogFolder")->setFocus();
    Box(dlg, "txtDefGamPort")->setText("27961");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(Box(dlg, "txtLogFolder"), &enter);
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(settings.DefaultPort, 27961);
}

// The Extras page has a row for every key of [Extras] in the settings file; its values go both
// ways, and a bad pin is refused on its page.
TEST_F(OptionsFixture, ExtrasPageRowsRoundTripAndRefusal) {
    test::TempFolder home;
    settings.AppPath = home.Slash();
    app::SaveSettings(settings);
    const std::string file = test::ReadBytes(home.File("Tallybot.ini"));
    std::set<std::string> written, rows; // the keys of [Extras], up to the next blank line
    std::istringstream lines(file.substr(file.find("[Extras]\r\n") + 10));
    for (std::string line; std::getline(lines, line) && line.find('=') != std::string::npos;)
        written.insert(line.substr(0, line.find('=')));
    for (const auto& row : desktop::ExtrasRows())
        rows.insert(row.key);
    EXPECT_EQ(rows, written);

    settings.Extras.IrcTls = 1;
    settings.Extras.IrcEncoding = "UTF-8";
    settings.Extras.IdentPort = 1113;
    settings.Extras.IrcPassword = "secret";
    frmOptions dlg(settings, boxes);
    EXPECT_TRUE(Check(dlg, "extIrcTls")->isChecked());
    EXPECT_EQ(dlg.findChild<QComboBox*>("extIrcEncoding")->currentText(), "UTF-8");
    EXPECT_EQ(Box(dlg, "extIdentPort")->text(), "1113");
    Check(dlg, "extAutoReconnect")->setChecked(true);
    Box(dlg, "extIdentPort")->setText("2113");
    auto* sasl = dlg.findChild<QComboBox*>("extSaslMechanism");
    sasl->setCurrentIndex(sasl->findData("EXTERNAL"));
    Box(dlg, "extIrcTlsPinSha256")->setText("not hex");
    Click(dlg, "cmdOK");
    EXPECT_NE(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(boxes.LastText(), "The certificate fingerprint must be 64 hexadecimal digits (colons allowed).");
    EXPECT_EQ(dlg.findChild<QTabWidget*>("sstOptions")->currentWidget()->objectName(), "pagExtras");
    EXPECT_EQ(settings.Extras.AutoReconnect, 0);
    const std::string pin(64, 'a');
    Box(dlg, "extIrcTlsPinSha256")->setText(QString::fromStdString(pin));
    Click(dlg, "cmdOK");
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(settings.Extras.AutoReconnect, 1);
    EXPECT_EQ(settings.Extras.IdentPort, 2113);
    EXPECT_EQ(settings.Extras.SaslMechanism, "EXTERNAL");
    EXPECT_EQ(settings.Extras.IrcTlsPinSha256, pin);
    EXPECT_EQ(settings.Extras.IrcPassword, "secret");
    EXPECT_EQ(settings.Extras.IrcEncoding, "UTF-8");
}

QColor ColourAt(QTextEdit& box, int position) {
    QTextCursor cursor(box.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat().foreground().color();
}

// The colour boxes show the stored colours; the preview paints the expanded template in the
// chosen ones; OK stores the label colour padded to two digits and the value colour unpadded.
TEST_F(OptionsFixture, ColourBoxesAndThePreview) {
    settings.ExtTextCol = "\x03"
                          "04";
    frmOptions dlg(settings, boxes);
    EXPECT_TRUE(dlg.findChild<QToolButton*>("picExtTextCol(4)")->isChecked());
    EXPECT_TRUE(dlg.findChild<QToolButton*>("picInfoTextCol(2)")->isChecked());
    Click(dlg, "picExtTextCol(12)");
    Click(dlg, "picInfoTextCol(5)");
    Box(dlg, "txtOnJoinMsg")
        ->setText("$ec$Map:$ic$ %map% \x02"
                  "bold");
    auto* preview = dlg.findChild<QTextEdit*>("rtfOnJoinPreview");
    EXPECT_EQ(preview->toPlainText(), "Map: q3wctf2 bold");
    EXPECT_EQ(ColourAt(*preview, 0), desktop::PreviewColour(12));
    EXPECT_EQ(ColourAt(*preview, 5), desktop::PreviewColour(5));
    QTextCursor bold(preview->document());
    bold.setPosition(15);
    EXPECT_EQ(bold.charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(settings.ExtTextCol, "\x03"
                                   "04"); // nothing stored before OK
    ASSERT_TRUE(dlg.Confirm());
    EXPECT_EQ(settings.ExtTextCol, "\x03"
                                   "12");
    EXPECT_EQ(settings.InfoTextCol, "\x03"
                                    "5");
}

// The placeholder picker opens where it was closed (twips: 15 to the pixel at 96 dpi) and inserts
// at the caret, replacing the selection.
TEST_F(OptionsFixture, PickerInsertsAtTheCaretAndOpensWhereItWasClosed) {
    settings.ModWinLeft = 1845;
    settings.ModWinTop = 1155;
    frmOptions dlg(settings, boxes);
    auto* notice = Box(dlg, "txtNoticeMsg");
    notice->setText("Welcome to map");
    notice->setCursorPosition(11);
    Click(dlg, "cmdNoticeModifiers");
    auto& picker = dlg.Modifiers();
    EXPECT_EQ(picker.pos(), QPoint(123, 77));
    ASSERT_EQ(picker.List().count(), 22);
    EXPECT_EQ(picker.List().item(6)->text(), "%map% - Mapname");
    picker.Choose(6);
    EXPECT_EQ(notice->text(), "Welcome to %map%map");
    notice->setSelection(0, 7);
    picker.Choose(21);
    EXPECT_EQ(notice->text(), "#fca# to %map%map");
    picker.move(210, 160);
    picker.close();
    EXPECT_EQ(settings.ModWinLeft, 3150);
    EXPECT_EQ(settings.ModWinTop, 2400);
}

} // namespace
} // namespace tallybot::guitest
