#pragma once
// What the headless runner writes to standard output: every pane line, and what a window would
// show the operator besides the pane: the profile button's caption, the game server state and the
// lines the bot itself sends, marked "> ".

#include "app/logic/main_view.h"
#include "app/logic/pane_text.h"
#include "irc/pane_model.h"

#include <cstdio>
#include <string>

namespace tallybot::app {

class HeadlessOutput {
public:
    HeadlessOutput(OutputStyle style, std::FILE* out) : m_style(style), m_out(out) {}

    void PrintPaneLine(const irc::PaneLine& line);
    // The profile caption ("Profile: ...") and "Game server: " with the query status, each when
    // it has changed since the last call.
    void PrintViewChanges(const MainView& view);
    // A line the bot sent: "> text" to the channel, "> -nick- text" to a user.
    void PrintOwnLine(const std::string& target, const std::string& text);

private:
    void PrintText(const std::string& text, irc::Colour colour = 0); // 0: the pane's default colour

    OutputStyle m_style;
    std::FILE* m_out;
    std::string m_shownProfile;
    std::string m_shownStatus = "OFFLINE";
};

} // namespace tallybot::app
