#pragma once
// Wires the shared text-box check to a dialog's boxes: when a watched box loses the focus inside
// the dialog its text is checked; a refused entry is explained, the tab strip turns to the box's
// page and the focus goes back into the box.

#include <vector>

#include <QObject>

class QLineEdit;
class QTabWidget;

namespace tallybot::desktop {

class MessageBoxes;

class BoxValidator : public QObject {
public:
    BoxValidator(QTabWidget& tabs, MessageBoxes& boxes, QObject* parent = nullptr);

    // The box's objectName selects its rule (txtGamQueryTime, txtScorePerCap, ...).
    void Watch(QLineEdit* box);
    // Checks one box now; false after a refusal has been shown.
    bool Check(QLineEdit* box);
    // Checks every watched box in order, stopping at the first refusal.
    bool CheckAll();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTabWidget& m_tabs;
    MessageBoxes& m_boxes;
    std::vector<QLineEdit*> m_watched;
    bool m_refusing = false;
};

} // namespace tallybot::desktop
