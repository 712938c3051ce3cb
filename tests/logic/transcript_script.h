#pragma once
// Scripts with whole transcripts under tests/data/<folder>/*.script: "===" starts a case, "#" lines
// are comments, other lines are commands, and the indented lines below a command are what it
// caused. A runner replays a case's commands and writes each command with what it caused; the
// rebuilt file must come out byte for byte as it is. TALLYBOT_WRITE_EXPECTED=1 writes the rebuilt
// file instead, after a deliberate change (read the diff).

#include "tests/support/fixture_file.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::test {

// Bytes below 0x20, above 0x7E and the backslash are written as \xHH.
inline std::string Escape(std::string_view bytes) {
    std::string out;
    for (const unsigned char c : bytes) {
        char hex[5];
        std::snprintf(hex, sizeof hex, "\\x%02X", c);
        out += c < 0x20 || c > 0x7E || c == '\\' ? std::string(hex) : std::string(1, static_cast<char>(c));
    }
    return out;
}

// \xHH back to its byte; a backslash before anything else stays (game replies are full of them).
inline std::string Unescape(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 2) == "\\x" && i + 3 < text.size()) {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

// Runs one case: its header line and its commands in, the commands with their transcript out.
using CaseRunner = std::function<std::string(const std::string& header, const std::vector<std::string>& commands)>;

inline std::string Replay(const std::string& script, const CaseRunner& run) {
    std::istringstream in(script);
    std::string out, header;
    std::vector<std::string> commands;
    const auto flush = [&] {
        if (!commands.empty()) out += run(header, commands);
        commands.clear();
    };
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("  ")) continue;
        if (line.empty() || line[0] == '#' || line.starts_with("===")) {
            flush();
            out += line + "\n";
            if (line.starts_with("===")) header = line;
        } else {
            commands.push_back(line);
        }
    }
    flush();
    return out;
}

inline std::filesystem::path ScriptFolder(const std::string& folder) {
    return SourceRoot() / "tests" / "data" / folder;
}

inline std::vector<std::string> ScriptNames(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(ScriptFolder(folder)))
        if (entry.path().extension() == ".script") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

inline void CheckScript(const std::string& folder, const std::string& name, const CaseRunner& run) {
    const std::filesystem::path file = ScriptFolder(folder) / (name + ".script");
    const std::string script = ReadBytes(file.string());
    ASSERT_FALSE(script.empty()) << file;
    const std::string replayed = Replay(script, run);
    if (std::getenv("TALLYBOT_WRITE_EXPECTED"))
        std::ofstream(file, std::ios::binary) << replayed;
    else
        EXPECT_EQ(replayed, script);
}

} // namespace tallybot::test
