// The options dialog, the profile editor, the main window and the IRC pane driven by scripts: each
// file under tests/data/gui/ holds cases of commands on controls named as in the forms (type into a
// box, tick a box, click a button or menu entry, leave a box, press a key, answer the next
// question, run commands inside a dialog the window opens) and, indented below each command, what
// it caused: message boxes and questions, the page a tab strip turned to, the control that took the
// focus, a dialog closing, the lines of the settings file that the record now holds differently,
// profile-file lines written or files removed, lines sent to the IRC server. "show" writes the
// state of controls. At the end, the two checks a script cannot state.
#include "app/settings_file.h"
#include "gui/extras_page.h"
#include "gui/frm_main.h"
#include "gui/frm_modifiers.h"
#include "gui/frm_options.h"
#include "gui/frm_profiles.h"
#include "gui/irc_palette.h"
#include "gui/irc_pane_widget.h"
#include "gui/program_documentation.h"
#include "gui/window_geometry.h"
#include "profiles/profile_store.h"
#include "tests/gui/fake_message_boxes.h"
#include "tests/logic/logic_fixture.h"
#include "tests/support/fixture_file.h"
#include "tests/support/qt_wait.h"
#include "tests/support/script_replay.h"
#include "tests/support/temp_folder.h"

#include <cstdio>
#include <map>
#include <set>
#include <utility>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextEdit>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

namespace fs = std::filesystem;
using tallybot::test::Escape;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
    return lines;
}

// A control's state in one line: its text, ticks ("[x]"), entries (the current one with "*"), and
// whether it is disabled or hidden.
std::string Describe(QObject* o) {
    std::string s;
    const auto add = [&](const QString& text) {
        if (!s.empty()) s += ' ';
        s += text.toStdString();
    };
    if (auto* e = qobject_cast<QLineEdit*>(o)) add("\"" + e->text() + "\"");
    if (auto* c = qobject_cast<QComboBox*>(o)) add("\"" + c->currentText() + "\"");
    if (auto* b = qobject_cast<QAbstractButton*>(o)) add(b->text() + (b->isChecked() ? " [x]" : ""));
    if (auto* l = qobject_cast<QLabel*>(o)) add(l->text() + " " + l->styleSheet());
    if (auto* a = qobject_cast<QAction*>(o))
        add(a->text() + (a->isChecked() ? " [x]" : "") + (a->isVisible() ? "" : " hidden"));
    if (auto* l = qobject_cast<QListWidget*>(o))
        for (int i = 0; i < l->count(); ++i)
            add(l->item(i)->text() + (i == l->currentRow() ? "*;" : ";"));
    if (auto* t = qobject_cast<QTreeWidget*>(o))
        for (int i = 0; i < t->topLevelItemCount(); ++i)
            for (int column = 0; column < t->columnCount(); ++column)
                add(t->topLevelItem(i)->text(column) + (column + 1 == t->columnCount() ? ";" : ""));
    if (auto* t = qobject_cast<QTextEdit*>(o)) { // the newest line, in runs of one format
        for (auto run = t->document()->lastBlock().begin(); !run.atEnd(); ++run) {
            const QTextCharFormat f = run.fragment().charFormat();
            QString style = f.hasProperty(QTextFormat::ForegroundBrush) ? f.foreground().color().name() : "";
            if (f.hasProperty(QTextFormat::BackgroundBrush)) style += " on " + f.background().color().name();
            if (f.fontWeight() >= QFont::Bold) style += " bold";
            if (f.fontUnderline()) style += " underlined";
            add("[" + style.trimmed() + "]" + run.fragment().text());
        }
        const QScrollBar* bar = t->verticalScrollBar();
        if (bar->maximum() > 0) add(bar->value() == bar->maximum() ? "(at the end)" : "(scrolled back)");
    }
    auto* w = qobject_cast<QWidget*>(o);
    if (w && !w->isEnabled()) add("disabled");
    return s;
}

class GuiRunner {
public:
    std::string Run(const std::vector<std::string>& commands) {
        for (const std::string& command : commands) {
            m_out << command << "\n";
            Execute(command);
            testsupport::ProcessPendingEvents();
            Record();
        }
        if (!m_window) return m_out.str();
        m_rig.logic->SetViewObserver({});
        return m_out.str();
    }

private:
    QWidget* Top() {
        if (m_nested) return m_nested;
        if (m_dialog) return m_dialog.get();
        return m_window ? static_cast<QWidget*>(m_window.get()) : m_pane.get();
    }
    template <class T = QObject> T* Find(const std::string& name) {
        T* found = Top()->findChild<T*>(QString::fromStdString(name));
        if (!found) ADD_FAILURE() << "no control " << name;
        return found;
    }
    QLineEdit* Edit(const std::string& name) {
        auto* combo = Top()->findChild<QComboBox*>(QString::fromStdString(name));
        return combo ? combo->lineEdit() : Find<QLineEdit>(name);
    }
    // A value after its name; nothing (no trailing blank) when it is empty.
    static std::string Blank(const std::string& value) { return value.empty() ? value : " " + value; }
    static std::string Text(QPoint p) { return std::to_string(p.x()) + "," + std::to_string(p.y()); }
    static std::string Text(QSize s) { return std::to_string(s.width()) + "x" + std::to_string(s.height()); }
    // A path with the home folder and the source tree named as such.
    std::string Homeless(std::string path) {
        for (const auto& [from, to] : {std::pair<std::string, std::string>{m_rig.home.Slash(), "HOME/"},
                                       {tallybot::test::SourceRoot().string() + "/", "SOURCE/"}})
            if (path.starts_with(from)) path = to + path.substr(from.size());
        return path;
    }
    void Open(QDialog* dialog) {
        m_dialog.reset(dialog);
        m_dialog->show();
        m_open = true;
        m_ini = IniLines();
    }

    void Execute(const std::string& command) {
        const auto blank = command.find(' ');
        const std::string verb = command.substr(0, blank);
        const std::string arg = blank == std::string::npos ? "" : tallybot::test::Unescape(command.substr(blank + 1));
        const std::string first = arg.substr(0, arg.find(' '));
        const std::string rest = arg.find(' ') == std::string::npos ? "" : arg.substr(arg.find(' ') + 1);
        const std::map<std::string, std::function<void()>> verbs = {
            {"file",
             [&] {
                 fs::create_directories(fs::path(m_rig.home.File(first)).parent_path());
                 tallybot::test::WriteBytes(m_rig.home.File(first), rest);
                 m_files = ProfileFiles();
             }},
            {"options",
             [&] {
                 m_settings.AppPath = m_rig.home.Slash();
                 app::LoadSettings(m_settings);
                 Open(new desktop::frmOptions(m_settings, m_boxes));
             }},
            {"profiles", // "profiles 2": with the second profile in use
             [&] {
                 m_settings.AppPath = m_rig.home.Slash();
                 app::LoadSettings(m_settings);
                 profiles::LoadAllProfiles(m_settings);
                 m_settings.Profiles.CurrentProfile = arg.empty() ? 0 : std::stoi(arg);
                 auto* editor = new desktop::frmProfiles(m_settings, m_boxes);
                 editor->ProfilesChanged = [this] { m_out << "  profiles changed\n"; };
                 Open(editor);
             }},
            {"main",
             [&] {
                 m_rig.Start();
                 m_window = std::make_unique<app::frmMain>(*m_rig.logic, m_boxes);
                 m_rig.logic->SetViewObserver([this] { m_window->Refresh(); });
                 m_window->Refresh();
                 m_window->OpenUrl = [this](const QUrl& url) {
                     m_out << "  opened " << Homeless(url.toLocalFile().toStdString()) << "\n";
                 };
                 // A dialog the window opens runs the commands queued with "inside", then closes.
                 m_window->RunDialog = [this](QDialog& dialog) {
                     m_nested = &dialog;
                     for (const std::string& command : std::exchange(m_inside, {}))
                         Execute(command);
                     m_nested = nullptr;
                 };
             }},
            {"pane", // the IRC pane alone, over its own IRC core
             [&] {
                 m_core = std::make_unique<irc::uscIRC>(m_rig.transport, m_rig.clock);
                 m_pane = std::make_unique<desktop::IrcPaneWidget>();
                 m_pane->resize(700, 300);
                 m_pane->Bind(*m_core);
                 m_pane->OpenLink = [this](const std::string& link) { m_out << "  opened " << link << "\n"; };
                 m_pane->show();
             }},
            {"add", [&] { m_core->AddText(rest, std::stoi(first)); }},
            {"line", [&] { m_core->HandleLine(arg); }},
            {"lines", // "lines 200": as many numbered lines
             [&] {
                 for (int i = 0; i < std::stoi(arg); ++i)
                     m_core->AddText("line " + std::to_string(i), 0);
             }},
            {"control-type", [&] { m_core->Properties().ControlType = std::stoi(arg); }},
            {"click-at", // "click-at 8": a click on that character of the pane's first line
             [&] {
                 desktop::IrcOutputView& out = m_pane->Output();
                 QTextCursor cursor(out.document()->firstBlock());
                 cursor.setPosition(std::stoi(arg));
                 const QPoint at = out.cursorRect(cursor).center() + QPoint(2, 0);
                 for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                     const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
                     QMouseEvent click(type, at, out.viewport()->mapToGlobal(at), Qt::LeftButton, buttons,
                                       Qt::NoModifier);
                     QApplication::sendEvent(out.viewport(), &click);
                 }
             }},
            {"key", // "key txtIRCInput Ctrl+K": pressed and released; a lone character also types itself
             [&] {
                 const QKeyCombination key = QKeySequence::fromString(QString::fromStdString(rest))[0];
                 const QString text = rest.size() == 1 ? QString::fromStdString(rest) : QString();
                 for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                     QKeyEvent event(type, key.key(), key.keyboardModifiers(), text);
                     QApplication::sendEvent(Find<QWidget>(first), &event);
                 }
             }},
            {"visible",
             [&] { m_out << "  " << arg << (Find<QWidget>(arg)->isVisibleTo(Top()) ? " shown\n" : " hidden\n"); }},
            {"activate", // the window's first activation: centred or where, on the screen, maximised
             [&] {
                 m_window->Form_Activate();
                 const QRect area = m_window->screen()->availableGeometry(), frame = m_window->frameGeometry();
                 const bool centred = std::abs(frame.center().x() - area.center().x()) <= 2;
                 m_out << "  " << (centred ? "centred" : "at " + Text(m_window->pos()))
                       << (area.contains(frame) ? " on the screen" : " off the screen") << "\n";
                 if (m_window->isMaximized()) m_out << "  maximized\n";
             }},
            {"fit", // "fit 0,32,853,501": the first place of a 1000x660 window with that free area
             [&] {
                 int x = 0, y = 0, w = 0, h = 0;
                 std::sscanf(arg.c_str(), "%d,%d,%d,%d", &x, &y, &w, &h);
                 const auto fit = desktop::FitToScreen({1000, 660}, {760, 520}, {x, y, w, h}, {4, 32, 4, 4});
                 m_out << "  at " << Text(fit.topLeft) << " size " << Text(fit.size) << " minimum " << Text(fit.minimum)
                       << "\n";
             }},
            {"documentation", // the documentation a program in that folder of the home opens
             [&] {
                 const auto path = desktop::ProgramDocumentation(QString::fromStdString(m_rig.home.File(arg)));
                 m_out << "  " << Homeless(path.toStdString()) << "\n";
             }},
            {"inside", [&] { m_inside.push_back(command.substr(blank + 1)); }},
            {"select", [&] { Find<QListWidget>(first)->item(std::stoi(rest))->setSelected(true); }},
            {"reply", // a game reply, as the query socket delivers it
             [&] {
                 m_rig.logic->Query().sckGamServ_DataArrival(arg, {});
                 m_rig.logic->Sync();
             }},
            {"scores",
             [&] {
                 const auto& g = m_rig.logic->Game();
                 const auto& r = m_rig.logic->ReportState();
                 m_out << "  scores " << g.TeamScoreRed << ":" << g.TeamScoreBlue << " prev " << r.PrevScoreRed << ":"
                       << r.PrevScoreBlue << "\n";
             }},
            {"register", [&] { m_rig.RegisterIrc(); }},
            {"type", [&] { Edit(first)->setText(QString::fromStdString(rest)); }},
            {"check", [&] { Find<QAbstractButton>(first)->setChecked(rest == "1"); }},
            {"click",
             [&] {
                 if (auto* action = Top()->findChild<QAction*>(QString::fromStdString(arg)))
                     action->trigger();
                 else
                     Find<QAbstractButton>(arg)->click();
             }},
            {"choose",
             [&] {
                 auto* combo = Find<QComboBox>(first);
                 // "#11" is the twelfth entry; other texts name an entry's data
                 combo->setCurrentIndex(rest[0] == '#' ? std::stoi(rest.substr(1))
                                                       : combo->findData(QString::fromStdString(rest)));
             }},
            {"tab", [&] { Find<QTabWidget>(first)->setCurrentIndex(std::stoi(rest)); }},
            {"row", [&] { Find<QListWidget>(first)->setCurrentRow(std::stoi(rest)); }},
            {"caret", // "caret NAME 11", "caret NAME 0 7": the caret, or a selection of that length
             [&] {
                 std::istringstream at(rest);
                 int start = 0, length = 0;
                 at >> start >> length;
                 Edit(first)->setSelection(start, length);
             }},
            {"keys", // typed key by key, so the box's validator sees each
             [&] {
                 for (const char c : rest) {
                     QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(c)));
                     QApplication::sendEvent(Edit(first), &key);
                 }
             }},
            {"defaults", // the push buttons that Enter would press
             [&] {
                 for (auto* button : Top()->findChildren<QPushButton*>())
                     if (button->isDefault() || button->autoDefault())
                         m_out << "  default " << button->objectName().toStdString() << "\n";
             }},
            {"tray", // minimised, then back: the tray tooltip and the title
             [&] {
                 m_window->showMinimized();
                 m_out << "  tray" << Blank(m_window->TrayToolTip().toStdString()) << "\n";
                 m_window->showNormal();
                 m_out << "  title " << m_window->windowTitle().toStdString() << "\n";
             }},
            {"focus", [&] { Find<QWidget>(arg)->setFocus(); }},
            {"leave",
             [&] {
                 QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
                 QApplication::sendEvent(Find<QWidget>(arg), &leave);
             }},
            {"enter",
             [&] {
                 QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                 QApplication::sendEvent(Edit(arg), &enter);
             }},
            {"answer", // the next answers: yes, no, text:NAME, no-text, save, discard, keep (cancel the close)
             [&] {
                 std::istringstream answers(arg);
                 for (std::string a; answers >> a;) {
                     if (a == "yes" || a == "no") m_boxes.yesNo.push_back(a == "yes");
                     if (a.starts_with("text:")) m_boxes.textAnswers.push_back(QString::fromStdString(a.substr(5)));
                     if (a == "no-text") m_boxes.textAnswers.push_back(std::nullopt);
                     if (a == "save") m_boxes.saveChoices.push_back(desktop::SaveChoice::Save);
                     if (a == "discard") m_boxes.saveChoices.push_back(desktop::SaveChoice::Discard);
                     if (a == "keep") m_boxes.saveChoices.push_back(desktop::SaveChoice::Cancel);
                 }
             }},
            {"call", [&] { Call(first, rest); }},
            {"show",
             [&] {
                 std::istringstream names(arg);
                 for (std::string name; names >> name;)
                     m_out << "  " << name << ":" << Blank(Escape(Describe(Find(name)))) << "\n";
             }},
        };
        if (verbs.count(verb))
            verbs.at(verb)();
        else
            ADD_FAILURE() << "unknown command " << command;
    }

    // The dialogs' own steps, with what they return.
    void Call(const std::string& name, const std::string& arg) {
        auto* options = dynamic_cast<desktop::frmOptions*>(m_dialog.get());
        auto* editor = dynamic_cast<desktop::frmProfiles*>(m_dialog.get());
        const auto result = [&](bool value) { m_out << "  returns " << value << "\n"; };
        if (name == "Confirm") result(options->Confirm());
        if (name == "NewProfile") result(editor->NewProfile());
        if (name == "SaveCurrent") result(editor->SaveCurrent());
        if (name == "DeleteCurrent") result(editor->DeleteCurrent());
        if (name == "ShowProfile") editor->ShowProfile(std::stoi(arg));
        if (name == "reject") m_dialog->reject();
        if (name == "cmdAssignPlayers_Click") m_window->cmdAssignPlayers_Click();
        if (name == "cmdCorrectScore_Click") m_window->cmdCorrectScore_Click();
        if (name == "Pick") { // "Pick txtNoticeMsg 6 [210,160]": the placeholder picker for a box, where it
                              // opens, one entry chosen, then moved (when given) and closed
            std::istringstream words(arg);
            std::string box, to;
            int entry = 0, x = 0, y = 0;
            words >> box >> entry >> to;
            if (options) options->ShowModifiers(Find<QLineEdit>(box));
            if (editor) editor->ShowModifiers(Find<QLineEdit>(box));
            desktop::frmModifiers& picker = options ? options->Modifiers() : editor->Modifiers();
            m_out << "  picker at " << Text(picker.pos()) << "\n";
            picker.Choose(entry);
            if (std::sscanf(to.c_str(), "%d,%d", &x, &y) == 2) picker.move(x, y);
            picker.close();
        }
    }

    std::vector<std::string> IniLines() {
        if (!m_dialog) return {};
        app::AppSettings copy = m_settings; // the save escapes texts in place
        copy.AppPath = m_dump.Slash();
        app::SaveSettings(copy);
        return Lines(tallybot::test::ReadBytes(m_dump.File("Tallybot.ini")));
    }

    std::map<std::string, std::string> ProfileFiles() {
        std::map<std::string, std::string> files;
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(m_rig.home.File("Profiles"), ec))
            files[entry.path().filename().string()] = tallybot::test::ReadBytes(entry.path().string());
        return files;
    }

    // Everything new since the last command, in a fixed order.
    void Record() {
        for (; m_shown < m_boxes.shown.size(); ++m_shown)
            m_out << "  box " << m_boxes.shown[m_shown].title << ": " << Escape(m_boxes.shown[m_shown].text) << "\n";
        for (; m_asked < m_boxes.questions.size(); ++m_asked)
            m_out << "  asked " << Escape(m_boxes.questions[m_asked]) << "\n";
        for (; m_sent < m_rig.transport.sent.size(); ++m_sent)
            m_out << "  sent " << Escape(m_rig.transport.sent[m_sent]) << "\n";
        if (!Top()) return;
        for (auto* tabs : Top()->findChildren<QTabWidget*>()) {
            int& seen = m_tabs[tabs->objectName().toStdString()];
            if (tabs->currentIndex() != seen)
                m_out << "  tab " << tabs->objectName().toStdString() << " " << tabs->currentIndex() << "\n";
            seen = tabs->currentIndex();
        }
        const std::string focus = Top()->focusWidget() ? Top()->focusWidget()->objectName().toStdString() : "";
        if (focus != m_focus) m_out << "  focus " << focus << "\n";
        m_focus = focus;
        if (m_dialog && m_open && !m_dialog->isVisible())
            m_out << "  closed " << (m_dialog->result() == QDialog::Accepted ? "accepted" : "rejected") << "\n";
        m_open = m_dialog && m_dialog->isVisible();
        const auto ini = IniLines();
        for (std::size_t i = 0; i < ini.size() && i < m_ini.size(); ++i)
            if (ini[i] != m_ini[i]) m_out << "  ini " << Escape(ini[i]) << "\n";
        m_ini = ini;
        const auto files = ProfileFiles();
        for (const auto& [name, text] : files) {
            const auto before = Lines(m_files.count(name) ? m_files[name] : "");
            for (const std::string& line : Lines(text))
                if (std::find(before.begin(), before.end(), line) == before.end())
                    m_out << "  " << name << ":" << Blank(Escape(line)) << "\n";
        }
        for (const auto& [name, text] : m_files)
            if (!files.count(name)) m_out << "  removed " << name << "\n";
        m_files = files;
    }

    app::test::LogicRig m_rig;
    tallybot::test::TempFolder m_dump;
    app::AppSettings m_settings;
    FakeMessageBoxes m_boxes;
    std::unique_ptr<QDialog> m_dialog;
    std::unique_ptr<app::frmMain> m_window;
    std::unique_ptr<irc::uscIRC> m_core;
    std::unique_ptr<desktop::IrcPaneWidget> m_pane;
    QWidget* m_nested = nullptr;
    std::vector<std::string> m_inside;
    std::ostringstream m_out;
    std::size_t m_shown = 0, m_asked = 0, m_sent = 0;
    std::map<std::string, int> m_tabs;
    std::string m_focus;
    bool m_open = false;
    std::vector<std::string> m_ini;
    std::map<std::string, std::string> m_files;
};

TALLYBOT_SCRIPT_TESTS(GuiScriptTest, "gui", [](const std::string&, const std::vector<std::string>& commands) {
    return GuiRunner().Run(commands);
});

// The Extras page of the options dialog has a row for every key of [Extras] in the settings file.
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

// The font and back colour of the IRC control (an unknown family falls back to the fixed font);
// the fonts installed differ between machines, so this stays out of the scripts.
TEST(IrcPane, TakesTheControlsFontAndBackColor) {
    irc::testing::FakeTransport transport;
    irc::testing::FakeClock clock;
    irc::uscIRC core(transport, clock);
    desktop::IrcPaneWidget pane;
    core.Properties().Font = "No Such Family";
    core.Properties().BackColor = 0x00336699; // 0x00BBGGRR
    pane.ApplyFontAndBackColor(core.Properties());
    const QString fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    for (QWidget* box : {static_cast<QWidget*>(&pane.Output()), static_cast<QWidget*>(&pane.Input())}) {
        EXPECT_EQ(box->font().family(), fixed);
        EXPECT_EQ(box->palette().color(QPalette::Base), QColor(0x99, 0x66, 0x33));
    }
    const QString installed = QFontDatabase::families().value(0);
    core.Properties().Font = installed.toStdString();
    pane.ApplyFontAndBackColor(core.Properties());
    EXPECT_EQ(pane.Input().font().family(), installed);
}

} // namespace
} // namespace tallybot::guitest
