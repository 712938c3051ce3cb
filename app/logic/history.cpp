#include "app/logic/history.h"

#include "app/app_settings.h"
#include "reporting/templates.h"

#include <utility>

namespace tallybot::app {

void AddToHistory(const std::string& text, std::vector<std::string>& list) {
    if (text.empty()) return;
    const std::string wanted = reporting::TrimBlanks(text);
    const std::size_t compared = std::min<std::size_t>(list.size(), kHistorySize);
    for (std::size_t i = 0; i < compared; ++i) {
        if (reporting::TrimBlanks(list[i]) != wanted) continue;
        if (i != 0) std::swap(list[i], list[0]);
        return;
    }
    list.insert(list.begin(), text);
    if (list.size() > static_cast<std::size_t>(kHistorySize)) list.resize(kHistorySize);
}

} // namespace tallybot::app
