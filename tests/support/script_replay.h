#pragma once
// Scripts with whole transcripts under tests/data/<folder>/*.script: "===" starts a case, "#" lines
// are comments, other lines are commands, and the indented lines below a command are what it
// caused. A runner replays a case's commands and writes each command with what it caused; the
// rebuilt file must come out byte for byte as it is. TALLYBOT_WRITE_EXPECTED=1 writes the rebuilt
// file instead, after a deliberate change (read the diff).

#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::test {

// Bytes below 0x20, above 0x7E and the backslash are written as \xHH.
std::string Escape(std::string_view bytes);
// \xHH back to its byte; a backslash before anything else stays (game replies are full of them).
std::string Unescape(std::string_view text);

// Runs one case: its header line and its commands in, the commands with their transcript out.
using CaseRunner = std::function<std::string(const std::string& header, const std::vector<std::string>& commands)>;

std::string Replay(const std::string& script, const CaseRunner& run);

// The scripts of tests/data/<folder>, by name without ".script", sorted.
std::vector<std::string> ScriptNames(const std::string& folder);

void CheckScript(const std::string& folder, const std::string& name, const CaseRunner& run);

// A case runner that writes each command, runs it, then writes what Record() finds changed.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    std::string Run(const std::vector<std::string>& commands) {
        for (const std::string& command : commands) {
            m_out << command << "\n";
            Execute(command);
            Record();
        }
        return m_out.str();
    }

protected:
    virtual void Execute(const std::string& command) = 0;
    virtual void Record() = 0;
    std::ostringstream m_out;
};

} // namespace tallybot::test

// Registers one test per script of tests/data/<folder>, named after the script and replayed with
// the case runner given last.
#define TALLYBOT_SCRIPT_TESTS(Suite, folder, ...)                                                                      \
    class Suite : public ::testing::TestWithParam<std::string> {};                                                     \
    TEST_P(Suite, ReplaysAsWritten) {                                                                                  \
        ::tallybot::test::CheckScript(folder, GetParam(), __VA_ARGS__);                                                \
    }                                                                                                                  \
    INSTANTIATE_TEST_SUITE_P(Scripts, Suite, ::testing::ValuesIn(::tallybot::test::ScriptNames(folder)),               \
                             [](const auto& info) { return info.param; })
