#include "gui/extras_page.h"

#include "gui/message_boxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tallybot::desktop {

namespace {

using X = base::ExtrasSettings;

std::optional<QString> Fingerprint(const QString& value) {
    static const QRegularExpression hex("^[0-9A-Fa-f:]*$");
    const QString digits = QString(value).remove(':');
    if (value.isEmpty() || (hex.match(value).hasMatch() && digits.size() == 64)) return std::nullopt;
    return QString("The certificate fingerprint must be 64 hexadecimal digits (colons allowed).");
}

std::optional<QString> ExistingFile(const QString& value) {
    if (value.isEmpty() || QFileInfo(value).isFile()) return std::nullopt;
    return QString("The file %1 does not exist.").arg(value);
}

} // namespace

const std::vector<ExtrasRow>& ExtrasRows() {
    using K = ExtrasKind;
    static const std::vector<ExtrasRow> rows = {
        {"IrcTls", K::Flag, "Connect over &TLS", "Encrypts the IRC connection; most networks offer it on port 6697.",
         &X::IrcTls},
        {"IrcTlsVerify", K::Flag, "&Verify the server certificate",
         "Refuses a server whose certificate is not trusted or names another host.", &X::IrcTlsVerify},
        {"IrcTlsPinSha256",
         K::Text,
         "Certificate &fingerprint",
         "SHA-256 of a self-signed server certificate to accept even when verification fails.",
         nullptr,
         &X::IrcTlsPinSha256,
         0,
         0,
         {},
         &Fingerprint},
        {"IrcPassword", K::Secret, "Server &password", "Sent as PASS before registration; empty: none.", nullptr,
         &X::IrcPassword},
        {"SaslMechanism",
         K::Choice,
         "&SASL",
         "Logs in to the network's account service while registering.",
         nullptr,
         &X::SaslMechanism,
         0,
         0,
         {"", "PLAIN", "EXTERNAL"}},
        {"SaslUser", K::Text, "SASL &account", "Account name for SASL PLAIN.", nullptr, &X::SaslUser},
        {"SaslPassword", K::Secret, "SASL pass&word", "Password for SASL PLAIN.", nullptr, &X::SaslPassword},
        {"ClientCertFile",
         K::Text,
         "Client &certificate",
         "PEM file shown to the server over TLS (SASL EXTERNAL).",
         nullptr,
         &X::ClientCertFile,
         0,
         0,
         {},
         &ExistingFile},
        {"ClientKeyFile",
         K::Text,
         "Client &key",
         "PEM private key of that certificate.",
         nullptr,
         &X::ClientKeyFile,
         0,
         0,
         {},
         &ExistingFile},
        {"AutoReconnect", K::Flag, "&Reconnect after a loss",
         "Connects again, with growing pauses, when the server drops the connection.", &X::AutoReconnect},
        {"PacedSending", K::Flag, "Pace &outgoing lines", "Queues lines so the server's flood limit never kicks in.",
         &X::PacedSending},
        {"IdentEnabled", K::Flag, "Answer &ident requests", "Runs the ident responder while connecting.",
         &X::IdentEnabled},
        {"IdentPort", K::Number, "I&dent port", "Ports below 1024 need privileges; 113 is the standard one.",
         &X::IdentPort, nullptr, 1, 65535},
        {"IrcEncoding",
         K::Choice,
         "Text &encoding",
         "How texts are written to and read from the IRC server.",
         nullptr,
         &X::IrcEncoding,
         0,
         0,
         {"Latin-1", "UTF-8"}},
        {"ModernQuake3", K::Flag, "Present-day &Quake 3 servers",
         "Recognises ioquake3 and its forks and the reply variants they send.", &X::ModernQuake3},
        {"A2SQuery", K::Flag, "A&2S queries", "Queries Half-Life family servers with the current A2S protocol.",
         &X::A2SQuery},
        {"IPv6", K::Flag, "IPv&6 addresses", "Allows IPv6 addresses for the game and IRC servers.", &X::IPv6},
        {"GameColoursToIrc", K::Flag, "&Game colours to IRC",
         "Turns colour codes in player and host names into IRC colours instead of removing them.",
         &X::GameColoursToIrc},
        {"TwoDigitColours", K::Flag, "Two-digit co&lour codes",
         "Writes a colour number as two digits where a digit or comma follows, so clients read it as written.",
         &X::TwoDigitColours},
        {"ReportAddress", K::Text, "Error report &mail address",
         "Where error reports go; empty: no report is offered at shutdown.", nullptr, &X::ReportAddress},
        {"WinWidth", K::Number, "Window widt&h",
         "Kept with the window position; 0: the first size, fitted to the screen.", &X::WinWidth, nullptr, 0, 16384},
        {"WinHeight", K::Number, "Window height", "As the width.", &X::WinHeight, nullptr, 0, 16384},
        {"UserFromIdent", K::Flag, "&User name from the e-mail address",
         "Registers with the part of the e-mail address before \"@\", which every server accepts.", &X::UserFromIdent},
        {"ShowErrorNumerics", K::Flag, "Show the server's &numeric errors",
         "Shows every error the server sends (400 to 599) in the error colour, such as a refused user name.",
         &X::ShowErrorNumerics},
        {"JoinAfter422", K::Flag, "&Join when there is no MOTD",
         "Joins the channel after 422 (no message of the day) as after its end.", &X::JoinAfter422},
        {"TrailingAfterPrefix", K::Flag, "Te&xt after the sender's address",
         "Reads a line's text after the sender, so users with IPv6 hosts are understood.", &X::TrailingAfterPrefix},
        {"NickFrom001", K::Flag, "Nick from the welcome, retr&y a taken one",
         "Takes the own nick from the server's welcome; a taken nick is retried with \"_\" up to three times.",
         &X::NickFrom001},
        {"QueryRetry", K::Flag, "Pro&be a silent game server again",
         "After ten silent rounds, probes after 30 s, doubling to 10 minutes, instead of stopping.", &X::QueryRetry},
    };
    return rows;
}

ExtrasPage::ExtrasPage(QWidget* parent) : QWidget(parent) {
    auto* inner = new QWidget;
    auto* form = new QFormLayout(inner);
    for (const ExtrasRow& row : ExtrasRows()) {
        QWidget* control = nullptr;
        switch (row.kind) {
        case ExtrasKind::Flag:
            control = new QCheckBox(row.label);
            break;
        case ExtrasKind::Number: {
            auto* line = new QLineEdit;
            line->setValidator(new QIntValidator(row.minimum, row.maximum, line));
            control = line;
            break;
        }
        case ExtrasKind::Text:
        case ExtrasKind::Secret: {
            auto* line = new QLineEdit;
            if (row.kind == ExtrasKind::Secret) line->setEchoMode(QLineEdit::PasswordEchoOnEdit);
            control = line;
            break;
        }
        case ExtrasKind::Choice: {
            auto* combo = new QComboBox;
            for (const char* choice : row.choices)
                combo->addItem(*choice ? QString(choice) : QString("(none)"), QString(choice));
            control = combo;
            break;
        }
        }
        control->setObjectName(QString("ext") + row.key);
        auto* explanation = new QLabel(row.explanation);
        explanation->setWordWrap(true);
        if (row.kind == ExtrasKind::Flag) explanation->setIndent(22); // under the caption, not the box
        explanation->setStyleSheet("QLabel { color: palette(placeholder-text); }");
        auto* cell = new QVBoxLayout;
        cell->setSpacing(1);
        cell->addWidget(control);
        cell->addWidget(explanation);
        if (row.kind == ExtrasKind::Flag) {
            form->addRow(cell);
        } else {
            auto* label = new QLabel(row.label);
            label->setBuddy(control);
            form->addRow(label, cell);
        }
    }
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(inner);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
}

QWidget* ExtrasPage::Control(const ExtrasRow& row) const {
    return findChild<QWidget*>(QString("ext") + row.key);
}

void ExtrasPage::Load(const base::ExtrasSettings& extras) {
    for (const ExtrasRow& row : ExtrasRows()) {
        QWidget* control = Control(row);
        if (auto* check = qobject_cast<QCheckBox*>(control)) {
            check->setChecked(extras.*row.number != 0);
        } else if (auto* combo = qobject_cast<QComboBox*>(control)) {
            const QString value = FromBytes(extras.*row.text);
            int index = combo->findData(value);
            if (index < 0) { // a value typed into the file by hand stays as it is
                combo->addItem(value, value);
                index = combo->count() - 1;
            }
            combo->setCurrentIndex(index);
        } else if (auto* line = qobject_cast<QLineEdit*>(control)) {
            line->setText(row.number ? QString::number(extras.*row.number) : FromBytes(extras.*row.text));
            line->setCursorPosition(0);
        }
    }
}

std::optional<QString> ExtrasPage::Check() const {
    for (const ExtrasRow& row : ExtrasRows()) {
        auto* line = qobject_cast<QLineEdit*>(Control(row));
        if (!line) continue;
        std::optional<QString> refusal;
        if (row.kind == ExtrasKind::Number) {
            bool ok = false;
            const int value = line->text().toInt(&ok);
            if (!ok || value < row.minimum || value > row.maximum)
                refusal = QString("%1 must be a whole number from %2 to %3.")
                              .arg(QString(row.label).remove('&'))
                              .arg(row.minimum)
                              .arg(row.maximum);
        } else if (row.check) {
            refusal = row.check(line->text());
        }
        if (refusal) {
            line->setFocus();
            return refusal;
        }
    }
    return std::nullopt;
}

void ExtrasPage::Store(base::ExtrasSettings& extras) const {
    for (const ExtrasRow& row : ExtrasRows()) {
        QWidget* control = Control(row);
        if (auto* check = qobject_cast<QCheckBox*>(control)) {
            extras.*row.number = check->isChecked() ? 1 : 0;
        } else if (auto* combo = qobject_cast<QComboBox*>(control)) {
            extras.*row.text = ToBytes(combo->currentData().toString());
        } else if (auto* line = qobject_cast<QLineEdit*>(control)) {
            if (row.number) {
                extras.*row.number = line->text().toInt();
            } else {
                extras.*row.text = ToBytes(line->text());
            }
        }
    }
}

} // namespace tallybot::desktop
