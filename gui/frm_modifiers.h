#pragma once
// frmModifiers: the placeholder picker. Lists the 22 template marks; choosing one inserts its mark
// at the caret of the text box it was opened for. It opens where it was last closed.

#include <QDialog>

class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace tallybot::app {
struct AppSettings;
}

namespace tallybot::desktop {

class frmModifiers : public QDialog {
public:
    frmModifiers(app::AppSettings& settings, QWidget* parent = nullptr);

    // The box the next choice goes into; the picker follows the box the operator works in.
    void SetTarget(QLineEdit* target);
    QLineEdit* Target() const { return m_target; }
    // Inserts the mark of list row `row` into the target, replacing its selection.
    void Choose(int row);

    QListWidget& List() { return *m_list; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    app::AppSettings& m_settings;
    QListWidget* m_list;
    QLineEdit* m_target = nullptr;
};

} // namespace tallybot::desktop
