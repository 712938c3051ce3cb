// The layers are a rule of the build, not a convention: base at the bottom, the plain C++ cores
// above it, the application, the window module on top. Each row names a folder and what its files
// must never include.

#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

struct LayerRule {
    const char* folder;                  // relative to the source root
    std::vector<const char*> skip;       // subfolders with rules of their own (Qt adapters)
    std::vector<const char*> forbidden;  // include prefixes, "<Q" for any Qt header
    std::vector<const char*> allowedApp; // exceptions to a forbidden "app/" prefix
};

const LayerRule kRules[] = {
    {"base", {}, {"app/", "gui/", "query/", "reporting/", "irc/", "profiles/", "tools/", "tests/", "<Q"}, {}},
    {"query", {"qt"}, {"app/", "gui/", "reporting/", "irc/", "<Q"}, {}},
    {"irc", {"qt"}, {"app/", "gui/", "query/", "reporting/", "<Q"}, {}},
    {"reporting", {}, {"app/", "gui/", "irc/", "<Q"}, {}},
    {"profiles", {}, {"app/", "gui/", "reporting/", "irc/", "<Q"}, {}},
    // The main logic reads the application's settings record, never its Qt side or the window.
    {"app/logic",
     {},
     {"app/", "gui/", "<Q"},
     {"app/logic/", "app/app_settings.h", "app/settings_file.h", "app/command_line.h"}},
    {"app", {"logic"}, {"gui/"}, {}},
};

void PrintTo(const LayerRule& rule, std::ostream* out) {
    *out << rule.folder;
}

bool StartsWith(const std::string& text, const char* prefix) {
    return text.rfind(prefix, 0) == 0;
}

// The included name with its delimiter ('"' or '<') in front, for every #include of a file.
std::vector<std::string> Includes(const fs::path& file) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<std::string> names;
    std::ifstream in(file);
    std::string line;
    std::smatch m;
    while (std::getline(in, line))
        if (std::regex_search(line, m, include)) names.push_back((m[1] == "<" ? "<" : "") + m[2].str());
    return names;
}

bool Skipped(const fs::path& relative, const LayerRule& rule) {
    for (const char* sub : rule.skip)
        if (StartsWith(relative.generic_string(), (std::string(rule.folder) + "/" + sub + "/").c_str())) return true;
    return false;
}

std::vector<std::string> Violations(const LayerRule& rule) {
    std::vector<std::string> found;
    const fs::path root = tallybot::test::SourceRoot();
    for (const auto& entry : fs::recursive_directory_iterator(root / rule.folder)) {
        const auto ext = entry.path().extension();
        if (!entry.is_regular_file() || (ext != ".h" && ext != ".cpp")) continue;
        const fs::path relative = fs::relative(entry.path(), root);
        if (Skipped(relative, rule)) continue;
        for (const std::string& name : Includes(entry.path())) {
            bool allowed = false;
            for (const char* exception : rule.allowedApp)
                allowed = allowed || StartsWith(name, exception);
            if (allowed) continue;
            for (const char* prefix : rule.forbidden)
                if (StartsWith(name, prefix)) found.push_back(relative.generic_string() + " includes " + name);
        }
    }
    return found;
}

class LayeringTest : public testing::TestWithParam<LayerRule> {};

TEST_P(LayeringTest, FolderIncludesNothingAboveOrBesideIt) {
    const auto violations = Violations(GetParam());
    EXPECT_TRUE(violations.empty()) << testing::PrintToString(violations);
}

INSTANTIATE_TEST_SUITE_P(Folders, LayeringTest, testing::ValuesIn(kRules), [](const auto& info) {
    std::string name = info.param.folder;
    for (char& c : name)
        if (c == '/') c = '_';
    return name;
});

} // namespace
