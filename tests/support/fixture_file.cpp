#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace tallybot::test {

std::string ReadFixture(std::string_view relative) {
    // CTest passes the source folder; a test run by hand finds it from this file's own path.
    const char* env = std::getenv("TALLYBOT_SOURCE_DIR");
    std::filesystem::path root =
        env ? std::filesystem::path(env) : std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
    std::filesystem::path file = root / "tests" / "data" / std::filesystem::path(std::string(relative));
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "missing fixture " << file;
        return {};
    }
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace tallybot::test
