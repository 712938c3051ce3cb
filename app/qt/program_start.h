#pragma once
// What the headless runner and the window module both do once their application object exists:
// find the home folder, hand a command to an instance already running there, or prepare the
// start of a new instance.

#include "app/command_line.h"
#include "app/logic/main_logic.h"

#include <optional>
#include <string>

namespace tallybot::app {

struct ProgramPlace {
    std::string home;          // the resolved home folder, not yet created
    std::string programFolder; // the executable's folder
};

// Needs the QCoreApplication (or QApplication) to exist.
ProgramPlace LocateProgram(const CommandLine& line);
// --send, or a command for an instance already running on this home: the exit code once it is
// delivered (or, for --send, could not be); nothing when this process should run the instance.
std::optional<int> DeliverToRunning(const CommandLine& line, const ProgramPlace& place);
// Creates the home folder (profiles copied on first use) and fills the start-up options.
StartupOptions PrepareStartup(const CommandLine& line, const ProgramPlace& place, base::OperatorShell& shell);

// After start-up: a home without any profile reports no match; said on standard error and in the log.
void WarnWhenNoProfiles(MainLogic& logic);

} // namespace tallybot::app
