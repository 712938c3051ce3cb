#pragma once
// The operator shell without a window: messages go to standard error, every yes/no question is
// answered "no", and nothing is opened.

#include "base/app_log.h"

namespace tallybot::app {

class HeadlessShell final : public base::OperatorShell {
public:
    void ShowMessage(const std::string& text, const std::string& title) override;
    bool AskYesNo(const std::string& text, const std::string& title) override;
    void OpenExternal(const std::string& url) override;
};

} // namespace tallybot::app
