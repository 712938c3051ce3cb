// The IRC pane widget over the real IRC core: painted colours, backgrounds and attributes, links
// and channel names under the mouse, the formatting keys, Enter, the history and the user list.
#include "gui/irc_palette.h"
#include "gui/irc_pane_widget.h"
#include "tests/irc/fake_irc_transport.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

class IrcPaneTest : public ::testing::Test {
protected:
    IrcPaneTest() : core(transport, clock) {
        pane.resize(700, 300);
        pane.Bind(core);
        pane.OpenLink = [this](const std::string& link) { opened.push_back(link); };
        pane.show();
    }

    QTextCharFormat FormatAt(int block, int column) {
        QTextCursor cursor(pane.Output().document()->findBlockByNumber(block));
        cursor.setPosition(cursor.block().position() + column + 1);
        return cursor.charFormat();
    }
    // The viewport point over a character of a block.
    QPoint PointOf(int block, int column) {
        QTextCursor cursor(pane.Output().document()->findBlockByNumber(block));
        cursor.setPosition(cursor.block().position() + column);
        return pane.Output().cursorRect(cursor).center() + QPoint(2, 0);
    }
    void Click(const QPoint& at) {
        QWidget* viewport = pane.Output().viewport();
        QMouseEvent press(QEvent::MouseButtonPress, at, viewport->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, at, viewport->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QApplication::sendEvent(viewport, &press);
        QApplication::sendEvent(viewport, &release);
    }
    void Key(int key, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, key, mods, text);
        QKeyEvent release(QEvent::KeyRelease, key, mods, text);
        QApplication::sendEvent(&pane.Input(), &press);
        QApplication::sendEvent(&pane.Input(), &release);
    }

    irc::testing::FakeTransport transport;
    irc::testing::FakeClock clock;
    irc::uscIRC core;
    desktop::IrcPaneWidget pane;
    std::vector<std::string> opened;
};

// The font and back colour of the control (an unknown family falls back to the fixed font); the
// colours, backgrounds, bold and underline of a line; the newest line stays in view.
TEST_F(IrcPaneTest, PaintsTheLinesInTheControlsFontAndColours) {
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

    core.AddText("plain \x03"
                 "04,08red on yellow\x0f \x02"
                 "bold\x02 \x1funder",
                 0x660000);
    EXPECT_EQ(pane.Output().document()->findBlockByNumber(0).text(), "plain red on yellow bold under");
    EXPECT_EQ(FormatAt(0, 0).foreground().color(), desktop::FromWindowsColour(0x660000));
    EXPECT_EQ(FormatAt(0, 6).foreground().color(), desktop::IrcPaletteColour(4));
    EXPECT_EQ(FormatAt(0, 6).background().color(), desktop::IrcPaletteColour(8));
    EXPECT_EQ(FormatAt(0, 20).fontWeight(), QFont::Bold);
    EXPECT_FALSE(FormatAt(0, 20).fontUnderline());
    EXPECT_TRUE(FormatAt(0, 25).fontUnderline());
    EXPECT_NE(FormatAt(0, 25).fontWeight(), QFont::Bold);
    for (int i = 0; i < 200; ++i)
        core.AddText("line " + std::to_string(i), 0);
    auto* bar = pane.Output().verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->value(), bar->maximum());
}

// A click on a link opens it, on a channel name joins it, elsewhere does nothing; the user list
// shows the operator and voice marks.
TEST_F(IrcPaneTest, LinksChannelsAndUsers) {
    core.AddText("see http://example.org/x and #other, or plain", 0);
    Click(PointOf(0, 8));
    EXPECT_EQ(opened, std::vector<std::string>{"http://example.org/x"});
    Click(PointOf(0, 30));
    EXPECT_EQ(transport.Last(), "JOIN #other\r\n");
    const std::size_t sent = transport.sent.size();
    Click(PointOf(0, 41));
    EXPECT_EQ(transport.sent.size(), sent);
    EXPECT_EQ(opened.size(), 1u);
    EXPECT_EQ(pane.Output().WordAt(PointOf(0, 8)), "http://example.org/x");
    core.HandleLine(":irc.test 353 Corvamo = #Zephra :@op +voiced plain");
    ASSERT_EQ(pane.Users().count(), 3);
    EXPECT_EQ(pane.Users().item(0)->text(), "@op");
    EXPECT_EQ(pane.Users().item(1)->text(), "+voiced");
    EXPECT_EQ(pane.Users().item(2)->text(), "plain");
}

// Ctrl+K shows the colour picker (digits keep it open), the formatting keys insert their codes,
// Enter sends the line and Up and Down walk the history.
TEST_F(IrcPaneTest, TheInputLine) {
    pane.Input().setText("a");
    Key(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(pane.ColourPicker().isVisibleTo(&pane));
    Key(Qt::Key_4, Qt::NoModifier, "4");
    EXPECT_TRUE(pane.ColourPicker().isVisibleTo(&pane));
    Key(Qt::Key_B, Qt::ControlModifier);
    EXPECT_FALSE(pane.ColourPicker().isVisibleTo(&pane));
    Key(Qt::Key_U, Qt::ControlModifier);
    Key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(pane.Input().text().toLatin1().toStdString(), "a\x03"
                                                            "4\x02\x1f\x0f");
    core.Properties().ControlType = 0; // not on a channel: the core answers in the pane
    pane.Input().setText("/JOIN #one");
    Key(Qt::Key_Return);
    EXPECT_EQ(transport.Last(), "JOIN #one\r\n");
    EXPECT_TRUE(pane.Input().text().isEmpty());
    pane.Input().setText("/JOIN #two");
    Key(Qt::Key_Return);
    Key(Qt::Key_Up);
    EXPECT_EQ(pane.Input().text(), "/JOIN #two");
    Key(Qt::Key_Up);
    EXPECT_EQ(pane.Input().text(), "/JOIN #one");
    Key(Qt::Key_Down);
    EXPECT_EQ(pane.Input().text(), "/JOIN #two");
}

} // namespace
} // namespace tallybot::guitest
