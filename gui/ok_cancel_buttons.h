#pragma once
// The OK/Cancel row of the editing dialogs, and which button Enter presses.

#include <functional>

class QDialog;
class QDialogButtonBox;
class QPushButton;

namespace tallybot::desktop {

// "OK" (`cmdOK`) accepts `dialog` only when `confirm` agrees; "Cancel" (`cmdCancel`) rejects it.
// The caller places the returned box in its layout, then calls MakeDefaultButton for "OK".
QDialogButtonBox* OkCancelButtons(QDialog* dialog, std::function<bool()> confirm);

// Enter presses `button` wherever the focus is. Run once every button of the dialog exists: the
// others lose their (auto-)default role, which Qt would otherwise hand to the first one it finds,
// such as a "Browse..." beside a text box.
void MakeDefaultButton(QDialog& dialog, QPushButton& button);

} // namespace tallybot::desktop
