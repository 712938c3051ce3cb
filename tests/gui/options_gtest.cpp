// The options dialog beyond its scripts (tests/data/gui/options.script): the Extras page has a row
// for every key of [Extras], the preview paints in the chosen colours, and the placeholder picker
// opens where it was closed.
#include "app/app_settings.h"
#include "app/settings_file.h"
#include "gui/extras_page.h"
#include "gui/frm_modifiers.h"
#include "gui/frm_options.h"
#include "gui/irc_palette.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/support/temp_folder.h"

#include <set>
#include <sstream>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

TEST(Options, ExtrasPageHasARowForEveryKeyOfTheSettingsFile) {
    test::TempFolder home;
    app::AppSettings settings;
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
}

QTextCharFormat FormatAt(QTextEdit& box, int position) {
    QTextCursor cursor(box.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

// The preview paints the expanded template in the chosen colours, with bold; the picker opens
// where it was closed (twips: 15 to the pixel at 96 dpi) and stores where it was closed.
TEST(Options, PreviewColoursAndThePickersPlace) {
    app::AppSettings settings;
    settings.ModWinLeft = 1845;
    settings.ModWinTop = 1155;
    FakeMessageBoxes boxes;
    desktop::frmOptions dlg(settings, boxes);
    dlg.findChild<QAbstractButton*>("picExtTextCol(12)")->click();
    dlg.findChild<QAbstractButton*>("picInfoTextCol(3)")->click();
    dlg.findChild<QLineEdit*>("txtOnJoinMsg")
        ->setText("$ec$Map:$ic$ %map% \x02"
                  "bold");
    auto* preview = dlg.findChild<QTextEdit*>("rtfOnJoinPreview");
    EXPECT_EQ(preview->toPlainText(), "Map: q3wctf2 bold");
    EXPECT_EQ(FormatAt(*preview, 0).foreground().color(), desktop::PreviewColour(12));
    EXPECT_EQ(FormatAt(*preview, 5).foreground().color(), desktop::PreviewColour(3));
    EXPECT_EQ(FormatAt(*preview, 14).fontWeight(), QFont::Bold);

    dlg.ShowModifiers(dlg.findChild<QLineEdit*>("txtOnJoinMsg"));
    EXPECT_EQ(dlg.Modifiers().pos(), QPoint(123, 77));
    dlg.Modifiers().move(210, 160);
    dlg.Modifiers().close();
    EXPECT_EQ(settings.ModWinLeft, 3150);
    EXPECT_EQ(settings.ModWinTop, 2400);
}

} // namespace
} // namespace tallybot::guitest
