#include "irc/irc_text_codec.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

struct OutCase {
    const char* name;
    std::string internal; // Windows-1252 bytes (or a UTF-8 name kept as it came)
    std::string wire;     // the UTF-8 line, CR LF included
};

class EncodeOut : public ::testing::TestWithParam<OutCase> {};

TEST_P(EncodeOut, ConvertsAtTheSocket) {
    EXPECT_EQ(EncodeWireLine(GetParam().internal + "\r\n", IrcEncoding::Utf8), GetParam().wire + "\r\n");
    EXPECT_EQ(EncodeWireLine(GetParam().internal + "\r\n", IrcEncoding::Latin1), GetParam().internal + "\r\n");
}

INSTANTIATE_TEST_SUITE_P(Cases, EncodeOut,
                         ::testing::Values(OutCase{"Ascii", "PRIVMSG #t :score 3:1", "PRIVMSG #t :score 3:1"},
                                           OutCase{"Latin1Letter", "PRIVMSG #t :J\xF6rg", "PRIVMSG #t :J\xC3\xB6rg"},
                                           OutCase{"Cp1252Euro", "PRIVMSG #t :\x80 5", "PRIVMSG #t :\xE2\x82\xAC 5"},
                                           OutCase{"UnassignedCp1252ByteAsC1", "x\x81", "x\xC2\x81"},
                                           OutCase{"NoBreakSpaceOfQuit",
                                                   "QUIT a\xA0"
                                                   "b",
                                                   "QUIT a\xC2\xA0"
                                                   "b"},
                                           OutCase{"Utf8NameKept", "PRIVMSG #t :\xE5\xBC\xA0\xE4\xB8\x89 joined",
                                                   "PRIVMSG #t :\xE5\xBC\xA0\xE4\xB8\x89 joined"},
                                           OutCase{"ColourCodesUntouched",
                                                   "\x03"
                                                   "10Red\x0F",
                                                   "\x03"
                                                   "10Red\x0F"}),
                         [](const auto& info) { return std::string(info.param.name); });

struct CutCase {
    const char* name;
    std::size_t asciiBefore; // ASCII bytes before the first 2-byte letter
    std::size_t letters;     // 0xE9 letters (two bytes each in UTF-8)
    std::size_t wireBytes;   // length of the encoded line without CR LF
};

class EncodeCut : public ::testing::TestWithParam<CutCase> {};

TEST_P(EncodeCut, LongLinesEndOnACharacterBoundary) {
    const CutCase& c = GetParam();
    const std::string line = std::string(c.asciiBefore, 'a') + std::string(c.letters, '\xE9') + "\r\n";
    const std::string wire = EncodeWireLine(line, IrcEncoding::Utf8);
    ASSERT_GE(wire.size(), 2u);
    EXPECT_EQ(wire.substr(wire.size() - 2), "\r\n");
    EXPECT_EQ(wire.size() - 2, c.wireBytes);
    const std::string body = wire.substr(0, wire.size() - 2);
    EXPECT_EQ(Utf8CutPoint(body, body.size()), body.size());
    ASSERT_FALSE(body.empty());
    EXPECT_NE(static_cast<unsigned char>(body.back()), 0xC3u);
}

INSTANTIATE_TEST_SUITE_P(Cases, EncodeCut,
                         ::testing::Values(CutCase{"FitsExactly", 0, 255, 510},
                                           CutCase{"OddStartCutsBefore", 1, 300, 509},
                                           CutCase{"EvenStartFills", 2, 300, 510},
                                           CutCase{"ShortLineWhole", 10, 5, 20}),
                         [](const auto& info) { return std::string(info.param.name); });

struct InCase {
    const char* name;
    std::vector<std::string> reads;
    std::string internal;
};

class DecodeIn : public ::testing::TestWithParam<InCase> {};

TEST_P(DecodeIn, GivesWindows1252Bytes) {
    Utf8Decoder decoder;
    std::string out;
    for (const std::string& read : GetParam().reads)
        out += decoder.Feed(read);
    EXPECT_EQ(out, GetParam().internal);
}

INSTANTIATE_TEST_SUITE_P(Cases, DecodeIn,
                         ::testing::Values(InCase{"Utf8Letter", {"J\xC3\xB6rg\r\n"}, "J\xF6rg\r\n"},
                                           InCase{"SplitBetweenReads", {"J\xC3", "\xB6rg"}, "J\xF6rg"},
                                           InCase{"EuroSplitInThree", {"\xE2", "\x82", "\xAC!"}, "\x80!"},
                                           InCase{"Latin1ClientPassesThrough", {"J\xF6rg"}, "J\xF6rg"},
                                           InCase{"NoWindows1252Byte", {"\xE5\xBC\xA0!"}, "?!"},
                                           InCase{"NoBreakSpaceIsItsByte", {"a\xC2\xA0!"}, "a\xA0!"},
                                           InCase{"OverlongIsNotUtf8", {"\xC0\xAF"}, "\xC0\xAF"},
                                           InCase{"SurrogateIsNotUtf8", {"\xED\xA0\x80"}, "\xED\xA0\x80"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(IrcEncodingName, Utf8SpellingsAndEverythingElseLatin1) {
    EXPECT_EQ(ParseIrcEncoding("UTF-8"), IrcEncoding::Utf8);
    EXPECT_EQ(ParseIrcEncoding("utf8"), IrcEncoding::Utf8);
    EXPECT_EQ(ParseIrcEncoding("Latin-1"), IrcEncoding::Latin1);
    EXPECT_EQ(ParseIrcEncoding(""), IrcEncoding::Latin1);
}

} // namespace
} // namespace tallybot::irc
