#pragma once
// Every question and notice a dialog puts to the operator goes through this interface, so GUI
// tests can read the texts and answer the questions without a modal box.

#include <optional>
#include <string>

#include <QString>

class QWidget;

namespace tallybot::desktop {

// Refusals and errors carry the warning icon; plain notices the information icon.
enum class BoxIcon { Information, Warning };

// The answer to "save the edits before they are lost?".
enum class SaveChoice { Save, Discard, Cancel };

class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    virtual void Show(QWidget* parent, const QString& title, const QString& text, BoxIcon icon = BoxIcon::Warning) = 0;
    virtual bool AskYesNo(QWidget* parent, const QString& title, const QString& question) = 0;
    // A line of text; nothing when the operator cancels.
    virtual std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& prompt) = 0;
    virtual SaveChoice AskSaveChanges(QWidget* parent, const QString& title, const QString& question) = 0;
    // A save-file dialog opened on proposedPath; the chosen path, or nothing when cancelled.
    // An existing file is not confirmed here: the caller asks its own question.
    virtual std::optional<QString> ChooseSaveFile(QWidget* parent, const QString& title,
                                                  const QString& proposedPath) = 0;
};

// The real thing: QMessageBox, QInputDialog and QFileDialog.
class QtMessageBoxes final : public MessageBoxes {
public:
    void Show(QWidget* parent, const QString& title, const QString& text, BoxIcon icon = BoxIcon::Warning) override;
    bool AskYesNo(QWidget* parent, const QString& title, const QString& question) override;
    std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& prompt) override;
    SaveChoice AskSaveChanges(QWidget* parent, const QString& title, const QString& question) override;
    std::optional<QString> ChooseSaveFile(QWidget* parent, const QString& title, const QString& proposedPath) override;
};

// Settings and IRC texts are Windows-1252/Latin-1 bytes; widgets hold QStrings.
inline QString FromBytes(const std::string& bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}
inline std::string ToBytes(const QString& text) {
    return text.toLatin1().toStdString();
}

} // namespace tallybot::desktop
