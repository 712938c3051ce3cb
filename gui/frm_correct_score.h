#pragma once
// frmCorrectScore: overwrites the two team scores. The capture check's previous scores follow, so
// the correction is never posted.

#include <cstdint>

#include <QDialog>

class QLineEdit;

namespace tallybot::query {
struct GameState;
}

namespace tallybot::desktop {

class MessageBoxes;

class frmCorrectScore : public QDialog {
public:
    frmCorrectScore(query::GameState& state, std::int32_t& previousRed, std::int32_t& previousBlue, MessageBoxes& boxes,
                    bool keepOnTop, QWidget* parent = nullptr);

    // cmdOK: false (dialog stays open, scores untouched) when a text is no 16-bit number.
    bool cmdOK_Click();

private:
    query::GameState& m_state;
    std::int32_t& m_previousRed;
    std::int32_t& m_previousBlue;
    MessageBoxes& m_boxes;
    QLineEdit* m_red;
    QLineEdit* m_blue;
};

} // namespace tallybot::desktop
