#include "gui/irc_palette.h"

#include "reporting/irc_preview.h"

namespace tallybot::desktop {

QColor FromWindowsColour(irc::Colour colour) {
    const auto value = static_cast<std::uint32_t>(colour);
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF));
}

QColor PreviewColour(int index) {
    if (index < 0 || index >= static_cast<int>(reporting::kPreviewColours.size())) return QColor(0, 0, 0);
    const auto& rgb = reporting::kPreviewColours[static_cast<std::size_t>(index)];
    return QColor(rgb.red, rgb.green, rgb.blue);
}

QColor IrcPaletteColour(int index) {
    return FromWindowsColour(irc::PaletteColour(index));
}

} // namespace tallybot::desktop
