#pragma once
// The program's icon (packaging/tallybot.svg) for the window and the tray.

#include <QIcon>

namespace tallybot::desktop {

// The SVG from the resources when Qt can render SVG here; otherwise the same drawing painted
// at the usual icon sizes, so the window never goes without its icon.
QIcon TallybotIcon();

} // namespace tallybot::desktop
