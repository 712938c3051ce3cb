#pragma once
// A row of the sixteen IRC colours as boxes, one of which is chosen (or none, for a stored value
// that is no colour number).

#include <functional>
#include <string>
#include <vector>

#include <QWidget>

class QToolButton;

namespace tallybot::desktop {

class ColourBoxes : public QWidget {
public:
    // Children are named baseName + "(0)" .. "(15)".
    explicit ColourBoxes(const QString& baseName, QWidget* parent = nullptr);

    int Chosen() const { return m_chosen; } // -1: none
    void Choose(int index);                 // out of 0..15: none
    std::function<void(int)> Changed;

private:
    std::vector<QToolButton*> m_boxes;
    int m_chosen = -1;
};

// The colour number of a ready-to-send colour prefix: the value from its second character on,
// or -1 when that is not a colour 0..15.
int ColourNumberOf(const std::string& prefix);

} // namespace tallybot::desktop
