#include "gui/irc_pane_widget.h"

#include "gui/irc_palette.h"
#include "gui/message_boxes.h"
#include "irc/pane_words.h"
#include "irc/usc_irc.h"
#include "irc/user_list.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace tallybot::desktop {

namespace {

constexpr int kPaneBlockLimit = 2000; // the window's scrollback; the core keeps fewer

int ShiftMask(Qt::KeyboardModifiers modifiers) {
    int mask = 0;
    if (modifiers & Qt::ShiftModifier) mask |= 1;
    if (modifiers & Qt::ControlModifier) mask |= 2;
    if (modifiers & Qt::AltModifier) mask |= 4;
    return mask;
}

// The host hears the platform's key codes: letters and digits as their upper-case ASCII.
int VbKeyCode(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
        return 9;
    case Qt::Key_Delete:
        return 46;
    default:
        return (key >= 0x20 && key <= 0x5A) ? key : 0;
    }
}

bool IsClickable(const std::string& word) {
    const auto kind = irc::ClassifyWord(word);
    return kind == irc::WordKind::Link || kind == irc::WordKind::Channel;
}

} // namespace

// ---- output pane

IrcOutputView::IrcOutputView(QWidget* parent) : QTextEdit(parent) {
    setObjectName("rtfIRCOutput");
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setMaximumBlockCount(kPaneBlockLimit);
    document()->setDocumentMargin(6);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    viewport()->setMouseTracking(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Base, Qt::white);
    setPalette(pal);
}

void IrcOutputView::AppendLine(const irc::PaneLine& line) {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    if (!document()->isEmpty()) cursor.insertBlock();
    cursor.setCharFormat(QTextCharFormat());
    for (const auto& run : line.Runs) {
        QTextCharFormat format;
        format.setForeground(FromWindowsColour(run.Foreground));
        if (run.Background) format.setBackground(FromWindowsColour(*run.Background));
        format.setFontWeight(run.Bold ? QFont::Bold : QFont::Normal);
        format.setFontUnderline(run.Underline);
        cursor.insertText(FromBytes(run.Text), format);
    }
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

std::string IrcOutputView::WordAt(const QPoint& viewportPos) const {
    const QTextCursor cursor = cursorForPosition(viewportPos);
    const QTextBlock block = cursor.block();
    if (!block.isValid()) return {};
    // cursorForPosition snaps to the nearest gap; only a point over the text itself counts.
    const QRect blockRect = document()->documentLayout()->blockBoundingRect(block).toRect().translated(
        -horizontalScrollBar()->value(), -verticalScrollBar()->value());
    if (!blockRect.contains(viewportPos)) return {};
    const std::string text = ToBytes(block.text());
    const auto pos = static_cast<std::size_t>(cursor.positionInBlock());
    std::string word = irc::WordAt(text, pos);
    if (word.empty() && pos > 0) word = irc::WordAt(text, pos - 1);
    return word;
}

void IrcOutputView::mouseMoveEvent(QMouseEvent* event) {
    QTextEdit::mouseMoveEvent(event);
    const bool hand = IsClickable(WordAt(event->position().toPoint()));
    viewport()->setCursor(hand ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

void IrcOutputView::mousePressEvent(QMouseEvent* event) {
    m_pressPos = event->position().toPoint();
    QTextEdit::mousePressEvent(event);
}

void IrcOutputView::mouseReleaseEvent(QMouseEvent* event) {
    QTextEdit::mouseReleaseEvent(event);
    const QPoint pos = event->position().toPoint();
    // A drag selects text; only a click acts on the word.
    if (event->button() != Qt::LeftButton || (pos - m_pressPos).manhattanLength() > 3) return;
    const std::string word = WordAt(pos);
    if (IsClickable(word) && WordClicked) WordClicked(word);
}

// ---- input box

IrcInputBox::IrcInputBox(QWidget* parent) : QLineEdit(parent) {
    setObjectName("txtIRCInput");
    setPlaceholderText("Type a message or a /command");
}

void IrcInputBox::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (KeyDown) KeyDown(VbKeyCode(key), ShiftMask(event->modifiers()));
    if (!(key >= Qt::Key_0 && key <= Qt::Key_9) && ColourPicker) ColourPicker(false);
    if (event->modifiers() & Qt::ControlModifier) {
        const char* code = nullptr;
        switch (key) {
        case Qt::Key_K:
            code = "\x03";
            break;
        case Qt::Key_U:
            code = "\x1f";
            break;
        case Qt::Key_B:
            code = "\x02";
            break;
        case Qt::Key_O:
            code = "\x0f";
            break;
        default:
            break;
        }
        if (code) {
            insert(QString::fromLatin1(code));
            if (KeyPress) KeyPress(code[0]);
            if (key == Qt::Key_K && ColourPicker) ColourPicker(true);
            return;
        }
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (KeyPress) KeyPress(13);
        const std::string line = ToBytes(text());
        clear();
        if (Entered) Entered(line);
        return;
    }
    if (KeyPress && !event->text().isEmpty()) KeyPress(event->text().at(0).unicode());
    QLineEdit::keyPressEvent(event);
}

void IrcInputBox::keyReleaseEvent(QKeyEvent* event) {
    QLineEdit::keyReleaseEvent(event);
    if (event->isAutoRepeat() && event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) return;
    if (event->key() == Qt::Key_Up && HistoryUp) setText(FromBytes(HistoryUp()));
    if (event->key() == Qt::Key_Down && HistoryDown) setText(FromBytes(HistoryDown()));
    if (KeyUp) KeyUp(VbKeyCode(event->key()), ShiftMask(event->modifiers()));
}

// ---- colour picker

IrcColourPicker::IrcColourPicker(QLineEdit& target, QWidget* parent) : QFrame(parent) {
    setObjectName("picIRCColors");
    setFrameShape(QFrame::StyledPanel);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(2);
    for (int i = 0; i < 16; ++i) {
        auto* swatch = new QToolButton(this);
        swatch->setObjectName(QString("picIRCColor%1").arg(i));
        swatch->setFixedSize(18, 18);
        swatch->setToolTip(QString::number(i));
        swatch->setStyleSheet(
            QString("QToolButton { background: %1; border: 1px solid #888; }").arg(IrcPaletteColour(i).name()));
        connect(swatch, &QToolButton::clicked, this, [this, &target, i] {
            target.insert(QString("%1").arg(i, 2, 10, QChar('0')));
            target.setFocus();
            hide();
        });
        row->addWidget(swatch);
    }
    row->addStretch();
}

// ---- the whole control

IrcPaneWidget::IrcPaneWidget(QWidget* parent)
    : QWidget(parent), m_output(new IrcOutputView), m_input(new IrcInputBox), m_users(new QListWidget) {
    setObjectName("ircMain");
    m_picker = new IrcColourPicker(*m_input);
    m_picker->hide();
    m_users->setObjectName("lvwUsers");
    m_users->setSortingEnabled(false);
    m_users->setMinimumWidth(110);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(m_output);
    splitter->addWidget(m_users);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    splitter->setSizes({600, 130});
    splitter->setChildrenCollapsible(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_picker);
    layout->addWidget(m_input);

    OpenLink = OpenLinkInSystem;
    m_input->ColourPicker = [this](bool show) { m_picker->setVisible(show); };
}

void IrcPaneWidget::ApplyFontAndBackColor(const irc::IrcProperties& props) {
    // The control's Font names a family ("Courier New" from the window's design); where it is not
    // installed, the system's fixed font takes its place at the same size.
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    QFont font = fixed;
    const QString family = FromBytes(props.Font);
    if (!family.isEmpty() && QFontDatabase::hasFamily(family)) font.setFamily(family);
    const QColor back = FromWindowsColour(props.BackColor);
    for (QWidget* box : {static_cast<QWidget*>(m_output), static_cast<QWidget*>(m_input)}) {
        box->setFont(font);
        QPalette pal = box->palette();
        pal.setColor(QPalette::Base, back);
        box->setPalette(pal);
    }
}

void IrcPaneWidget::Bind(irc::uscIRC& core) {
    m_core = &core;
    ApplyFontAndBackColor(core.Properties());
    QPointer<IrcPaneWidget> self(this);
    auto& view = core.View();
    view.PaneCleared = [self] {
        if (self) self->ClearPane();
    };
    view.PaneLineAdded = [self](const irc::PaneLine& line) {
        if (self) self->AppendLine(line);
    };
    view.UserListChanged = [self, &core] {
        if (self) self->SetUsers(core.Users());
    };
    view.OpenLink = [self](const std::string& link) {
        if (self && self->OpenLink) self->OpenLink(link);
    };
    m_output->WordClicked = [&core](const std::string& word) { core.ClickWord(word); };
    m_input->Entered = [&core](const std::string& line) { core.EnterInput(line); };
    m_input->HistoryUp = [&core] { return core.History().Up(); };
    m_input->HistoryDown = [&core] { return core.History().Down(); };
    m_input->KeyDown = [&core](int code, int shift) {
        if (core.Events().KeyDown) core.Events().KeyDown(code, shift);
    };
    m_input->KeyPress = [&core](int ascii) {
        if (core.Events().KeyPress) core.Events().KeyPress(ascii);
    };
    m_input->KeyUp = [&core](int code, int shift) {
        if (core.Events().KeyUp) core.Events().KeyUp(code, shift);
    };
    ClearPane();
    for (const auto& line : core.PaneLines())
        AppendLine(line);
    SetUsers(core.Users());
}

void IrcPaneWidget::AppendLine(const irc::PaneLine& line) {
    m_output->AppendLine(line);
}

void IrcPaneWidget::ClearPane() {
    m_output->clear();
}

void IrcPaneWidget::SetUsers(const irc::UserList& users) {
    m_users->clear();
    for (const auto& entry : users.Entries())
        m_users->addItem(FromBytes(entry.Shown()));
}

void OpenLinkInSystem(const std::string& link) {
    QDesktopServices::openUrl(QUrl::fromUserInput(FromBytes(link)));
}

} // namespace tallybot::desktop
