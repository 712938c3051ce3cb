#pragma once
// The window lives in a module of its own (libtallybot-window.so) so that `tallybot --headless`
// maps no GUI library: the executable links only Qt Core and Network and loads the module when
// it is asked for the window.

#include "app/command_line.h"

#include <string>
#include <vector>

namespace tallybot::app {

// The module's one entry, `extern "C"`: runs the whole windowed program on its own QApplication
// and returns the exit code. argc is a pointer because QApplication keeps a reference to it.
using WindowMainFunction = int (*)(int* argc, char** argv, const CommandLine* line);
inline constexpr const char* kWindowMainSymbol = "tallybot_window_main";
inline constexpr const char* kWindowModuleFile = "libtallybot-window.so";

// Beside the executable (a build tree), then ../lib/tallybot/ (an installed prefix).
std::vector<std::string> WindowModuleCandidates(const std::string& programFolder);
// Loads the module and runs it; exit code 1 and a message on standard error when it is missing
// or does not load.
int RunWindowModule(int& argc, char** argv, const CommandLine& line);

} // namespace tallybot::app
