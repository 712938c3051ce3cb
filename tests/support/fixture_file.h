#pragma once
// Reads a fixture under tests/data/ as bytes (0x00 and 0xFF kept).

#include <string>
#include <string_view>

namespace tallybot::test {

// The bytes of tests/data/<relative>; fails the calling test (and returns "") when it is missing.
std::string ReadFixture(std::string_view relative);

} // namespace tallybot::test
