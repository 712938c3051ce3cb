#pragma once
// Scripts of commands with, indented below each, what the command caused. A runner replays the
// commands of each case (the lines between headers "=== name" and comments "#") on a fresh object
// and the rebuilt file must come out byte for byte as written. TALLYBOT_WRITE_EXPECTED=1 writes the
// rebuilt file instead, after a deliberate change of behaviour; read its diff before committing.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::test {

class ScriptRunner {
public:
    virtual ~ScriptRunner() = default;
    // Runs one command and returns what it caused as indented lines, each ending in "\n".
    virtual std::string Run(const std::string& command) = 0;
};

using RunnerFactory = std::function<std::unique_ptr<ScriptRunner>()>;

// Bytes below 0x20, above 0x7E and the backslash are written as \xHH (\\ for the backslash).
std::string Escape(std::string_view bytes);
std::string Unescape(std::string_view text);

std::string ReplayScript(const std::string& script, const RunnerFactory& makeRunner);

// Replays a script (a path from the source root) and compares it (or rewrites it, see above).
void CheckScript(const std::string& relative, const RunnerFactory& makeRunner);

// The names of the *.script files in a folder (a path from the source root), sorted.
std::vector<std::string> ScriptsIn(const std::string& relativeFolder);

// A test name for a script's file name.
std::string ScriptName(const testing::TestParamInfo<std::string>& info);

} // namespace tallybot::test
