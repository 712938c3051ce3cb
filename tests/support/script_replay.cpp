#include "tests/support/script_replay.h"

#include "tests/support/fixture_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::test {

std::string Escape(std::string_view bytes) {
    std::string out;
    for (const unsigned char c : bytes) {
        char hex[5];
        std::snprintf(hex, sizeof hex, "\\x%02X", c);
        out += c < 0x20 || c > 0x7E || c == '\\' ? std::string(hex) : std::string(1, static_cast<char>(c));
    }
    return out;
}

std::string Unescape(std::string_view text) {
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

std::string Replay(const std::string& script, const CaseRunner& run) {
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

std::vector<std::string> ScriptNames(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(SourceRoot() / "tests" / "data" / folder))
        if (entry.path().extension() == ".script") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

void CheckScript(const std::string& folder, const std::string& name, const CaseRunner& run) {
    const std::string relative = folder + "/" + name + ".script";
    const std::string script = ReadFixture(relative);
    ASSERT_FALSE(script.empty()) << relative;
    const std::string replayed = Replay(script, run);
    if (std::getenv("TALLYBOT_WRITE_EXPECTED"))
        std::ofstream(SourceRoot() / "tests" / "data" / relative, std::ios::binary) << replayed;
    else
        EXPECT_EQ(replayed, script);
}

} // namespace tallybot::test
