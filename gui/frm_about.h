#pragma once
// frmAbout: name, version and purpose of the program.

#include <QDialog>

namespace tallybot::desktop {

class frmAbout : public QDialog {
public:
    explicit frmAbout(bool keepOnTop, QWidget* parent = nullptr);
};

} // namespace tallybot::desktop
