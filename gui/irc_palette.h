#pragma once
// Colours of the IRC side as Qt colours: the pane's Windows colour values (0x00BBGGRR) and the
// preview's 16-colour table.

#include "irc/pane_model.h"

#include <QColor>

namespace tallybot::desktop {

QColor FromWindowsColour(irc::Colour colour);
QColor PreviewColour(int index); // 0..15; anything else is black
QColor IrcPaletteColour(int index);

} // namespace tallybot::desktop
