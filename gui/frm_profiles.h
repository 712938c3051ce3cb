#pragma once
// frmProfiles: the profile editor. Lists the loaded profiles, shows every field of the chosen one
// on five pages, and creates, saves and deletes profile files.

#include "profiles/game_profile.h"

#include <functional>

#include <QDialog>

class QListWidget;
class QTabWidget;
class QTextEdit;
class QLineEdit;

namespace tallybot::app {
struct AppSettings;
}

namespace tallybot::desktop {

class BoxValidator;
class MessageBoxes;
class frmModifiers;

class frmProfiles : public QDialog {
public:
    frmProfiles(app::AppSettings& settings, MessageBoxes& boxes, QWidget* parent = nullptr);

    // cmdNew, cmdSave, cmdDelete; each returns whether a file was written or removed.
    bool NewProfile();
    bool SaveCurrent();
    bool DeleteCurrent();
    // Shows table entry index (1..ProfileCount) in the editor.
    void ShowProfile(int index);
    // Edits of the shown profile that are not saved yet.
    bool HasUnsavedEdits() const { return m_dirty; }
    // Before unsaved edits would be lost: asks Save / Discard / Cancel; true when it may go on.
    bool ResolveUnsavedEdits();
    // Closing (Close, Escape, the title bar) asks about unsaved edits first.
    void done(int result) override;
    int ShownIndex() const { return m_index; }
    void ShowModifiers(QLineEdit* target);
    frmModifiers& Modifiers() { return *m_modifiers; }

    // Runs after the profile table was reloaded (the main window refreshes its profile menu).
    std::function<void()> ProfilesChanged;

private:
    QWidget* BuildGeneralPage();
    QWidget* BuildMessagesPage();
    QWidget* BuildCustomPage();
    QWidget* BuildScoringPage();
    QWidget* BuildPostingPage();
    QLineEdit* TemplateRow(QWidget* page, const char* name, const char* previewName, QTextEdit** preview);
    // The editor's values over the shown entry; false (message shown) when a number does not fit.
    bool Collect(profiles::GameProfile& profile);
    void Reload(const std::string& selectFile);
    void RefreshPreviews();

    app::AppSettings& m_settings;
    MessageBoxes& m_boxes;
    QListWidget* m_list;
    QTabWidget* m_tabs;
    BoxValidator* m_validator;
    frmModifiers* m_modifiers;
    int m_index = 0;
    bool m_dirty = false;
    bool m_loading = false; // the editor is being filled: changes are not edits
    QTextEdit* m_startPreview = nullptr;
    QTextEdit* m_customPreview = nullptr;
    QTextEdit* m_endPreview = nullptr;
};

} // namespace tallybot::desktop
