// The conversions as a table: tests/data/base/conversions.txt holds one case a line,
// "function|argument|result", where the result is the value or "error N" for the error raised.

#include "base/vb_convert.h"
#include "base/window_units.h"
#include "tests/support/fixture_file.h"

#include <functional>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace tallybot::vb {
namespace {

std::string Number(double value) {
    std::ostringstream out;
    out << std::setprecision(15) << value;
    return out.str();
}

// Each function's result as text; an argument of two numbers is "a b".
const std::map<std::string, std::function<std::string(const std::string&)>> kFunctions = {
    {"CInt", [](const std::string& t) { return Number(CInt(std::string_view(t))); }},
    {"CByte", [](const std::string& t) { return Number(CByte(std::string_view(t))); }},
    {"CLng", [](const std::string& t) { return Number(CLng(std::string_view(t))); }},
    {"CIntOfNumber", [](const std::string& t) { return Number(CInt(std::stod(t))); }},
    {"RoundHalfEven", [](const std::string& t) { return Number(RoundHalfEven(std::stod(t))); }},
    {"Val", [](const std::string& t) { return Number(Val(t)); }},
    {"ProfileInt", [](const std::string& t) { return Number(ProfileInt(t, 99)); }},
    {"CStr", [](const std::string& t) { return CStr(std::stoll(t)); }},
    {"TwipsToPixels",
     [](const std::string& t) { return Number(base::TwipsToPixels(std::stoi(t), std::stod(t.substr(t.find(' '))))); }},
    {"PixelsToTwips",
     [](const std::string& t) { return Number(base::PixelsToTwips(std::stoi(t), std::stod(t.substr(t.find(' '))))); }},
};

TEST(VbConvert, TableOfConversions) {
    std::istringstream in(test::ReadFixture("base/conversions.txt"));
    int cases = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        const auto bar = line.find('|'), last = line.rfind('|');
        const std::string function = line.substr(0, bar), argument = line.substr(bar + 1, last - bar - 1);
        std::string result;
        try {
            result = kFunctions.at(function)(argument);
        } catch (const VbError& e) {
            result = "error " + std::to_string(e.Number());
        }
        EXPECT_EQ(result, line.substr(last + 1)) << line;
        ++cases;
    }
    EXPECT_GT(cases, 0);
}

} // namespace
} // namespace tallybot::vb
