#pragma once
// A pane line as a line of standard output. On a terminal the IRC colours become the 16 standard
// ANSI colours (the pane's default text colour is the terminal's own), with bold and underline;
// redirected (journald, a file) the text is plain UTF-8 without formatting codes; raw keeps the
// pane's bytes. The pane holds Windows-1252 bytes, so text is converted on the way out.

#include "app/command_line.h"
#include "irc/pane_model.h"

#include <string>
#include <string_view>

namespace tallybot::app {

enum class OutputStyle {
    Ansi,  // UTF-8 with the 16 standard ANSI colours, bold and underline
    Plain, // UTF-8 text only
    Raw,   // the pane's bytes, IRC codes included
};

// --color, --raw, whether standard output is a terminal, and whether NO_COLOR is set (non-empty).
OutputStyle ChooseOutputStyle(ColorChoice choice, bool raw, bool terminal, bool noColor);

// Windows-1252 bytes as UTF-8; a tab becomes a blank, other control characters are dropped, so
// that a hostile name can neither move the terminal's cursor nor break a journal line.
std::string PrintableUtf8(std::string_view windows1252);

// The SGR foreground code (30-37, 90-97) nearest to a Windows colour value; 39 for the pane's
// default text colour.
int AnsiForeground(irc::Colour colour);

// One pane line without its line end.
std::string RenderPaneLine(const irc::PaneLine& line, OutputStyle style);

} // namespace tallybot::app
