#include "app/qt/headless_output.h"

namespace tallybot::app {

void HeadlessOutput::PrintPaneLine(const irc::PaneLine& line) {
    const std::string text = RenderPaneLine(line, m_style);
    std::fwrite(text.data(), 1, text.size(), m_out);
    std::fputc('\n', m_out);
    std::fflush(m_out);
}

void HeadlessOutput::PrintText(const std::string& text, irc::Colour colour) {
    PrintPaneLine(irc::BuildPaneLine(text, colour));
}

void HeadlessOutput::PrintViewChanges(const MainView& view) {
    if (view.Query.cmdProfilesCaption != m_shownProfile) {
        m_shownProfile = view.Query.cmdProfilesCaption;
        PrintText(m_shownProfile);
    }
    if (view.Query.lblQueryStatusCaption != m_shownStatus) {
        m_shownStatus = view.Query.lblQueryStatusCaption;
        // As the window's status label: red offline, orange while connecting, green online.
        const int paletteIndex = m_shownStatus.rfind("ONLINE", 0) == 0 ? 3 : m_shownStatus == "OFFLINE" ? 4 : 7;
        PrintText("Game server: " + m_shownStatus, irc::PaletteColour(paletteIndex));
    }
}

void HeadlessOutput::PrintOwnLine(const std::string& target, const std::string& text) {
    const bool toChannel = !target.empty() && (target[0] == '#' || target[0] == '&');
    PrintText(toChannel ? "> " + text : "> -" + target + "- " + text);
}

} // namespace tallybot::app
