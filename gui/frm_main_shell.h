#pragma once
// The window's side of the platform: the logic's message boxes as real dialogs, external links
// through the desktop, and an optional screenshot of the main window for the documentation.

#include "base/app_log.h"

namespace tallybot::app {

class frmMain;

class FrmMainShell final : public base::OperatorShell {
public:
    void ShowMessage(const std::string& text, const std::string& title) override;
    bool AskYesNo(const std::string& text, const std::string& title) override;
    void OpenExternal(const std::string& url) override;
};

// With TALLYBOT_SCREENSHOT=<file.png> in the environment the window grabs itself into that file
// after TALLYBOT_SCREENSHOT_AFTER_MS milliseconds (default 4000) and closes, which ends the program
// normally; TALLYBOT_SCREENSHOT_SIZE=<W>x<H> resizes the window first; TALLYBOT_SCREENSHOT_OPTIONS=<tab>
// grabs the Options dialog on that page instead. Without TALLYBOT_SCREENSHOT nothing happens.
void ScheduleScreenshot(frmMain& window);

} // namespace tallybot::app
