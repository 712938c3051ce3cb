#include "tests/support/script_replay.h"

#include "tests/support/fixture_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace tallybot::test {

namespace fs = std::filesystem;

std::string Escape(std::string_view bytes) {
    std::string out;
    for (unsigned char c : bytes) {
        if (c == '\\') {
            out += "\\\\";
        } else if (c < 0x20 || c > 0x7E) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

std::string Unescape(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') {
            out += '\\';
            ++i;
        } else if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string ReplayScript(const std::string& script, const RunnerFactory& makeRunner) {
    std::istringstream in(script);
    std::string out;
    std::unique_ptr<ScriptRunner> runner;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("  ")) continue;
        if (line.empty() || line[0] == '#' || line.starts_with("===")) {
            runner.reset();
            out += line + "\n";
            continue;
        }
        if (!runner) runner = makeRunner();
        out += line + "\n" + runner->Run(line);
    }
    return out;
}

void CheckScript(const std::string& relative, const RunnerFactory& makeRunner) {
    const fs::path file = SourceRoot() / relative;
    std::ifstream in(file, std::ios::binary);
    ASSERT_TRUE(in.good()) << file;
    const std::string script((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string replayed = ReplayScript(script, makeRunner);
    if (std::getenv("TALLYBOT_WRITE_EXPECTED")) {
        std::ofstream(file, std::ios::binary) << replayed;
        return;
    }
    EXPECT_EQ(replayed, script);
}

std::vector<std::string> ScriptsIn(const std::string& relativeFolder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(SourceRoot() / relativeFolder))
        if (entry.path().extension() == ".script") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string ScriptName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param.substr(0, info.param.find('.'));
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

} // namespace tallybot::test
