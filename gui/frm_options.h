#pragma once
// frmOptions: edits every stored setting in memory. The controls are filled from the record when
// the dialog opens and copied back only by OK; Cancel leaves the record untouched.

#include <string>

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QTabWidget;
class QTextEdit;

namespace tallybot::app {
struct AppSettings;
}

namespace tallybot::desktop {

class BoxValidator;
class ColourBoxes;
class ExtrasPage;
class MessageBoxes;
class frmModifiers;

class frmOptions : public QDialog {
public:
    frmOptions(app::AppSettings& settings, MessageBoxes& boxes, QWidget* parent = nullptr);

    // cmdOK: checks the boxes, converts the numbers and stores everything; false (dialog stays
    // open) when a box is refused or a number does not fit its setting.
    bool Confirm();
    // Opens the placeholder picker for one of the two template boxes.
    void ShowModifiers(QLineEdit* target);
    frmModifiers& Modifiers() { return *m_modifiers; }
    BoxValidator& Validator() { return *m_validator; }

private:
    QWidget* BuildGeneralPage();
    QWidget* BuildIrcPage();
    QWidget* BuildGamePage();
    QWidget* BuildCommandsPage();
    QWidget* BuildOnJoinPage();
    QCheckBox* Check(const char* name, const QString& caption);
    QLineEdit* Line(const char* name);
    void LoadFromRecord();
    void StoreToRecord(std::int16_t queryTime, std::uint8_t sendDelay, std::int32_t defaultPort);
    void RefreshPreviews();

    app::AppSettings& m_settings;
    MessageBoxes& m_boxes;
    QTabWidget* m_tabs;
    BoxValidator* m_validator;
    frmModifiers* m_modifiers;
    ExtrasPage* m_extras = nullptr;
    ColourBoxes* m_extColour = nullptr;
    ColourBoxes* m_infoColour = nullptr;
    QTextEdit* m_colourPreview = nullptr;
    QTextEdit* m_onJoinPreview = nullptr;
    QTextEdit* m_noticePreview = nullptr;
};

} // namespace tallybot::desktop
