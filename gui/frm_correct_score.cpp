#include "gui/frm_correct_score.h"

#include "gui/message_boxes.h"
#include "gui/ok_cancel_buttons.h"
#include "profiles/team_assignment.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tallybot::desktop {

frmCorrectScore::frmCorrectScore(query::GameState& state, std::int32_t& previousRed, std::int32_t& previousBlue,
                                 MessageBoxes& boxes, bool keepOnTop, QWidget* parent)
    : QDialog(parent), m_state(state), m_previousRed(previousRed), m_previousBlue(previousBlue), m_boxes(boxes),
      m_red(new QLineEdit), m_blue(new QLineEdit) {
    setObjectName("frmCorrectScore");
    setWindowTitle(profiles::kCorrectScoreTitle);
    if (keepOnTop) setWindowFlag(Qt::WindowStaysOnTopHint);
    m_red->setObjectName("txtScoreRed");
    m_blue->setObjectName("txtScoreBlue");
    const auto texts = profiles::FillScoreTexts(m_state);
    m_red->setText(FromBytes(texts.Red));
    m_blue->setText(FromBytes(texts.Blue));

    auto* form = new QFormLayout;
    form->addRow("&Red team score:", m_red);
    form->addRow("&Blue team score:", m_blue);
    auto* buttons = OkCancelButtons(this, [this] { return cmdOK_Click(); });
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(280);
    MakeDefaultButton(*this, *findChild<QPushButton*>("cmdOK"));
}

bool frmCorrectScore::cmdOK_Click() {
    const auto refused =
        profiles::CorrectScore(m_state, ToBytes(m_red->text()), ToBytes(m_blue->text()), m_previousRed, m_previousBlue);
    if (!refused) return true;
    m_boxes.Show(this, profiles::kCorrectScoreTitle, FromBytes(*refused));
    return false;
}

} // namespace tallybot::desktop
