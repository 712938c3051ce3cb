#include "base/vb_convert.h"
#include "base/window_units.h"

#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace tallybot::vb {
namespace {

// Expected value, or the error number the conversion must raise.
struct Case {
    const char* text;
    std::optional<long> value;
    int error = 0;
};

template <class Convert> void RunTable(const char* name, Convert convert, std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(name) + "(\"" + c.text + "\")");
        if (c.value) {
            EXPECT_EQ(static_cast<long>(convert(c.text)), *c.value);
        } else {
            try {
                convert(c.text);
                ADD_FAILURE() << "no error raised";
            } catch (const VbError& e) {
                EXPECT_EQ(e.Number(), c.error);
            }
        }
    }
}

TEST(VbConvert, CIntOfText) {
    RunTable("CInt", [](const char* t) { return CInt(std::string_view(t)); },
             {
                 {"0", 0},
                 {" 42 ", 42},
                 {"-32768", -32768},
                 {"32767", 32767},
                 {"32768", std::nullopt, kOverflow},
                 {"-32769", std::nullopt, kOverflow},
                 {"2.5", 2},
                 {"3.5", 4},
                 {"-2.5", -2},
                 {"32767.5", std::nullopt, kOverflow},
                 {"1e3", 1000},
                 {"&HFF", 255},
                 {"&HFFFF", -1},
                 {"&O17", 15},
                 {"", std::nullopt, kTypeMismatch},
                 {"abc", std::nullopt, kTypeMismatch},
                 {"12abc", std::nullopt, kTypeMismatch},
                 {"1 2", std::nullopt, kTypeMismatch},
             });
}

TEST(VbConvert, CByteAndCLngOfText) {
    RunTable("CByte", [](const char* t) { return CByte(std::string_view(t)); },
             {
                 {"255", 255},
                 {"255.5", std::nullopt, kOverflow},
                 {"-0.5", 0},
                 {"-1", std::nullopt, kOverflow},
                 {"x", std::nullopt, kTypeMismatch},
             });
    RunTable("CLng", [](const char* t) { return CLng(std::string_view(t)); },
             {
                 {"2147483647", 2147483647},
                 {"-2147483648", -2147483648L},
                 {"2147483648", std::nullopt, kOverflow},
                 {"0.5", 0},
                 {"1.5", 2},
                 {"1e400", std::nullopt, kOverflow},
             });
}

TEST(VbConvert, RoundHalfEven) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(-1.5), -2);
    EXPECT_EQ(RoundHalfEven(2.6), 3);
    EXPECT_EQ(CInt(-32768.5), -32768);
}

TEST(VbConvert, ValReadsTheLeadingNumberAndNeverFails) {
    struct {
        const char* text;
        double value;
    } cases[] = {
        {"", 0},           {"abc", 0},     {"27960abc", 27960}, {" 1 615 198th", 1615198},
        {"-12.5x", -12.5}, {"1.2.3", 1.2}, {"1e", 1},           {"2e3", 2000},
        {"&H10", 16},      {"&HFFFF", -1}, {"+7", 7},           {"-", 0},
        {".5", 0.5},       {"3d2", 300},   {"\t9", 9},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(Val(c.text), c.value) << c.text;
}

TEST(VbConvert, ProfileIntReadsLeadingDigitsLikeThePlatform) {
    struct {
        const char* text;
        std::int32_t value;
    } cases[] = {
        {"1000", 1000}, {"abc", 0}, {"12abc", 12}, {"-5", -5}, {"+5", 5}, {" 7", 7}, {"4294967295", -1}, {"1.9", 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ProfileInt(c.text, 99), c.value) << c.text;
    EXPECT_EQ(ProfileInt("", 99), 99); // an empty value reads as the default
}

TEST(VbConvert, CStrHasNoLeadingBlank) {
    EXPECT_EQ(CStr(27960), "27960");
    EXPECT_EQ(CStr(-3), "-3");
}

// Window positions: twips in the file, pixels on a screen of the given logical dpi.
TEST(VbConvert, WindowPositionsBetweenTwipsAndPixels) {
    struct {
        std::int32_t twips;
        double dpi;
        std::int32_t pixels;
    } cases[] = {{7500, 96, 500}, {7500, 144, 750}, {-1500, 96, -100}, {1500, 0, 100}, {22, 96, 1}, {23, 96, 2}};
    for (const auto& c : cases) {
        EXPECT_EQ(base::TwipsToPixels(c.twips, c.dpi), c.pixels) << c.twips << " at " << c.dpi;
        EXPECT_EQ(base::PixelsToTwips(c.pixels, c.dpi), c.twips == 22 || c.twips == 23 ? c.pixels * 15 : c.twips);
    }
    EXPECT_EQ(base::PixelsToTwips(143165576, 96), 2147483640);
    EXPECT_THROW(base::PixelsToTwips(143165577, 96), VbError); // beyond the file's 32-bit range
}

} // namespace
} // namespace tallybot::vb
