#pragma once
// The source tree's root and the fixtures under tests/data/ as bytes (0x00 and 0xFF kept).

#include <filesystem>
#include <string>
#include <string_view>

namespace tallybot::test {

// TALLYBOT_SOURCE_DIR when set, else the tree this build was configured from; usable before main().
std::filesystem::path SourceRoot();

// The bytes of tests/data/<relative>; fails the calling test (and returns "") when it is missing.
std::string ReadFixture(std::string_view relative);

} // namespace tallybot::test
