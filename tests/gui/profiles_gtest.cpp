// The profile editor against real profile files: new with the name prompt, save, delete with the
// "Default" protection and the question, and the refusal of its two number boxes.
#include "app/app_settings.h"
#include "gui/frm_modifiers.h"
#include "gui/frm_profiles.h"
#include "profiles/profile_store.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/support/temp_folder.h"

#include <filesystem>
#include <fstream>

#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

class ProfilesTest : public ::testing::Test {
protected:
    ProfilesTest() {
        settings.AppPath = home.Slash();
        std::filesystem::create_directories(home.File("Profiles"));
        std::ofstream(home.File("Profiles/Default.igp")) << "[Game]\r\nEngine=0\r\n";
        std::ofstream(home.File("Profiles/ctf.igp")) << "[Game]\r\nEngine=2\r\n[General]\r\nDescription=flags\r\n";
        profiles::LoadAllProfiles(settings);
        dialog = std::make_unique<desktop::frmProfiles>(settings, boxes);
        dialog->ProfilesChanged = [this] { ++changes; };
    }
    QLineEdit* Box(const char* name) { return dialog->findChild<QLineEdit*>(name); }
    bool Exists(const char* file) { return std::filesystem::exists(home.File(std::string("Profiles/") + file)); }
    int Row(const char* name) {
        const auto items = dialog->findChild<QListWidget*>("lstProfiles")->findItems(name, Qt::MatchExactly);
        return items.empty() ? -1 : dialog->findChild<QListWidget*>("lstProfiles")->row(items[0]);
    }

    tallybot::test::TempFolder home;
    app::AppSettings settings;
    FakeMessageBoxes boxes;
    std::unique_ptr<desktop::frmProfiles> dialog;
    int changes = 0;
};

// New asks for a name and writes the file at once with the editor's values; Save writes the edited
// fields (the picker inserts at the caret); Delete spares "Default" and asks for the others.
TEST_F(ProfilesTest, NewSaveAndDelete) {
    dialog->ShowProfile(Row("ctf") + 1);
    boxes.textAnswers = {QString("duel"), std::nullopt};
    ASSERT_TRUE(dialog->NewProfile());
    EXPECT_EQ(boxes.questions.back(), "Create a new game profile|Name of new profile:");
    EXPECT_TRUE(Exists("duel.igp"));
    EXPECT_EQ(settings.Profiles.ProfileCount, 3);
    EXPECT_GE(Row("duel"), 0);
    const auto& shown = settings.Profiles.Entries[static_cast<std::size_t>(dialog->ShownIndex())];
    EXPECT_EQ(shown.ProfileName, "duel");
    EXPECT_EQ(shown.Description, "flags");
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(dialog->NewProfile()); // the name prompt cancelled
    EXPECT_EQ(settings.Profiles.ProfileCount, 3);

    dialog->ShowProfile(Row("ctf") + 1);
    Box("txtDescription")->setText("capture the flag");
    Box("txtCustomMessage")->setText("Score: ");
    Box("txtCustomMessage")->setCursorPosition(7);
    dialog->ShowModifiers(Box("txtCustomMessage"));
    dialog->Modifiers().Choose(11);
    dialog->Modifiers().close();
    Box("txtScorePerCap")->setText("5");
    dialog->findChild<QComboBox*>("cmbEngine")->setCurrentIndex(11);
    ASSERT_TRUE(dialog->SaveCurrent());
    app::AppSettings reread;
    reread.AppPath = home.Slash();
    profiles::LoadProfile(reread, 1, "ctf.igp");
    EXPECT_EQ(reread.Profiles.Entries[1].Description, "capture the flag");
    EXPECT_EQ(reread.Profiles.Entries[1].Message, "Score: %tsr%");
    EXPECT_EQ(reread.Profiles.Entries[1].ScorePerCap, 5);
    EXPECT_EQ(reread.Profiles.Entries[1].Engine, 11);

    dialog->ShowProfile(Row("Default") + 1);
    boxes.questions.clear();
    EXPECT_FALSE(dialog->DeleteCurrent());
    EXPECT_EQ(boxes.LastText(), "The default profile should not be deleted. It ensures proper functionality with "
                                "games for which no profile exists.");
    EXPECT_TRUE(boxes.questions.empty());
    EXPECT_TRUE(Exists("Default.igp"));
    dialog->ShowProfile(Row("ctf") + 1);
    boxes.yesNo = {false, true};
    EXPECT_FALSE(dialog->DeleteCurrent());
    EXPECT_EQ(boxes.questions.back(), "Delete profile?|Do you really want to delete this profile?");
    EXPECT_TRUE(Exists("ctf.igp"));
    EXPECT_TRUE(dialog->DeleteCurrent());
    EXPECT_FALSE(Exists("ctf.igp"));
    EXPECT_EQ(settings.Profiles.ProfileCount, 2);
    EXPECT_EQ(Row("ctf"), -1);
}

TEST_F(ProfilesTest, OpensOnTheProfileInUseAndAsksBeforeEditsAreLost) {
    const int ctf = Row("ctf") + 1;
    settings.Profiles.CurrentProfile = ctf;
    desktop::frmProfiles editor(settings, boxes);
    editor.show();
    EXPECT_EQ(editor.ShownIndex(), ctf);
    editor.findChild<QLineEdit*>("txtDescription")->setText("edited");
    editor.findChild<QListWidget*>("lstProfiles")->setCurrentRow(Row("Default")); // no answer: Cancel
    EXPECT_EQ(boxes.questions.back(), "Game profiles|The profile \"ctf\" has changes that are not saved. Save them?");
    EXPECT_EQ(editor.ShownIndex(), ctf);
    EXPECT_EQ(editor.findChild<QListWidget*>("lstProfiles")->currentRow(), ctf - 1);
    boxes.saveChoices = {desktop::SaveChoice::Cancel, desktop::SaveChoice::Save};
    editor.reject();
    EXPECT_TRUE(editor.isVisible());
    editor.reject();
    EXPECT_FALSE(editor.isVisible());
    EXPECT_NE(tallybot::test::ReadBytes(home.File("Profiles/ctf.igp")).find("Description=edited"), std::string::npos);
    EXPECT_EQ(boxes.questions.size(), 3u);
}

// Leaving a number box with a bad entry: the refusal, the box's own page, the focus back in it.
TEST_F(ProfilesTest, NumberBoxesAreRefusedOnTheirOwnPage) {
    dialog->show();
    auto* tabs = dialog->findChild<QTabWidget*>("sstDetails");
    struct Case {
        const char* box;
        const char* text;
        const char* message;
        int page;
    };
    for (const Case c : {Case{"txtIntervalTime", "", "You left the textbox empty. Please enter a value.", 4},
                         Case{"txtScorePerCap", "256",
                              "You did not enter a valid number. Please enter a valid value up to 255.", 3}}) {
        tabs->setCurrentIndex(0);
        boxes.shown.clear();
        Box(c.box)->setText(c.text);
        QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(Box(c.box), &leave);
        ASSERT_EQ(boxes.shown.size(), 1u) << c.box;
        EXPECT_EQ(boxes.shown[0].text, c.message);
        EXPECT_EQ(tabs->currentIndex(), c.page);
        EXPECT_EQ(dialog->focusWidget(), Box(c.box));
        Box(c.box)->setText("1");
    }
    Box("txtScorePerCap")->setText("255");
    boxes.shown.clear();
    EXPECT_TRUE(dialog->SaveCurrent());
    EXPECT_TRUE(boxes.shown.empty());
}

} // namespace
} // namespace tallybot::guitest
