#pragma once
// A pane line as text for a terminal: each run in its colour, bold and underline as ANSI escape
// sequences (24-bit colour), the Latin-1 bytes turned into UTF-8, and a reset at the end.

#include "irc/pane_model.h"

#include <string>

namespace tallybot::app {

std::string RenderAnsi(const irc::PaneLine& line);

} // namespace tallybot::app
