#pragma once
// The visible side of the IRC control: the output pane rtfIRCOutput (pane-model lines painted
// with the IRC palette, clickable links and channel names), the input box txtIRCInput with its
// formatting keys and history, the colour picker picIRCColors and the user list lvwUsers.

#include "irc/pane_model.h"

#include <functional>
#include <string>

#include <QFrame>
#include <QLineEdit>
#include <QTextEdit>
#include <QWidget>

class QListWidget;

namespace tallybot::irc {
struct IrcProperties;
class uscIRC;
class UserList;
} // namespace tallybot::irc

namespace tallybot::desktop {

// rtfIRCOutput: read-only rich text; a hand pointer over links and channels, a click reports the word.
class IrcOutputView : public QTextEdit {
public:
    explicit IrcOutputView(QWidget* parent = nullptr);
    void AppendLine(const irc::PaneLine& line);
    // The word under a point of the viewport, as the pane's word rules cut it.
    std::string WordAt(const QPoint& viewportPos) const;
    std::function<void(const std::string& word)> WordClicked;

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QPoint m_pressPos;
};

// txtIRCInput: Ctrl+K/B/U/O insert the control codes, Enter hands the line on, Up/Down step the history.
class IrcInputBox : public QLineEdit {
public:
    explicit IrcInputBox(QWidget* parent = nullptr);
    std::function<void(const std::string& line)> Entered;
    std::function<std::string()> HistoryUp;
    std::function<std::string()> HistoryDown;
    std::function<void(bool show)> ColourPicker;
    // Every key also goes to the host: code and VB shift mask (1 Shift, 2 Ctrl, 4 Alt), character.
    std::function<void(int keyCode, int shift)> KeyDown;
    std::function<void(int keyAscii)> KeyPress;
    std::function<void(int keyCode, int shift)> KeyUp;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
};

// picIRCColors: sixteen swatches; a click inserts the two-digit colour number into the input box.
class IrcColourPicker : public QFrame {
public:
    explicit IrcColourPicker(QLineEdit& target, QWidget* parent = nullptr);
};

class IrcPaneWidget : public QWidget {
public:
    explicit IrcPaneWidget(QWidget* parent = nullptr);

    // Shows the core's pane and user list and routes input, clicks and keys to it. The core must
    // outlive this widget.
    void Bind(irc::uscIRC& core);

    void AppendLine(const irc::PaneLine& line);
    void ClearPane();
    // The control's Font and BackColor on the pane and the input box.
    void ApplyFontAndBackColor(const irc::IrcProperties& props);
    void SetUsers(const irc::UserList& users);

    // Links go to the system's handler; tests replace it.
    std::function<void(const std::string& link)> OpenLink;

    IrcOutputView& Output() { return *m_output; }
    IrcInputBox& Input() { return *m_input; }
    QListWidget& Users() { return *m_users; }
    IrcColourPicker& ColourPicker() { return *m_picker; }

private:
    IrcOutputView* m_output;
    IrcInputBox* m_input;
    IrcColourPicker* m_picker;
    QListWidget* m_users;
    irc::uscIRC* m_core = nullptr;
};

// The default link handler: QDesktopServices with "www." links taken as web addresses.
void OpenLinkInSystem(const std::string& link);

} // namespace tallybot::desktop
