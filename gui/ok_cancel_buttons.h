#pragma once
// The OK/Cancel row of the editing dialogs.

#include <functional>

class QDialog;
class QDialogButtonBox;

namespace tallybot::desktop {

// "OK" (`cmdOK`, the default button) accepts `dialog` only when `confirm` agrees; "Cancel"
// (`cmdCancel`) rejects it. The caller places the returned box in its layout.
QDialogButtonBox* OkCancelButtons(QDialog* dialog, std::function<bool()> confirm);

} // namespace tallybot::desktop
