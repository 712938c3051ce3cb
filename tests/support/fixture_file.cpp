#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace tallybot::test {

std::filesystem::path SourceRoot() {
    const char* env = std::getenv("TALLYBOT_SOURCE_DIR");
    return env ? std::filesystem::path(env) : std::filesystem::path(TALLYBOT_DEFAULT_SOURCE_DIR);
}

std::string ReadFixture(std::string_view relative) {
    const std::filesystem::path file = SourceRoot() / "tests" / "data" / std::filesystem::path(std::string(relative));
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "missing fixture " << file;
        return {};
    }
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace tallybot::test
