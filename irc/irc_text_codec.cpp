#include "irc/irc_text_codec.h"

#include "irc/irc_wire.h"

#include <array>
#include <cctype>

namespace tallybot::irc {

namespace {

// 0x80..0x9F of Windows-1252; the five unassigned bytes keep their C1 code points.
constexpr std::array<char32_t, 32> kHigh = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool Continuation(unsigned char c) {
    return (c & 0xC0) == 0x80;
}

char32_t DecodeSequence(std::string_view s, std::size_t i, int length) {
    const auto b = [&](std::size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(s[i + k])); };
    switch (length) {
    case 2:
        return ((b(0) & 0x1F) << 6) | (b(1) & 0x3F);
    case 3:
        return ((b(0) & 0x0F) << 12) | ((b(1) & 0x3F) << 6) | (b(2) & 0x3F);
    default:
        return ((b(0) & 0x07) << 18) | ((b(1) & 0x3F) << 12) | ((b(2) & 0x3F) << 6) | (b(3) & 0x3F);
    }
}

} // namespace

IrcEncoding ParseIrcEncoding(std::string_view name) {
    std::string plain;
    for (char c : name) {
        if (c != '-' && c != ' ') plain += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return plain == "UTF8" ? IrcEncoding::Utf8 : IrcEncoding::Latin1;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

char32_t Cp1252ToUnicode(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? kHigh[byte - 0x80] : static_cast<char32_t>(byte);
}

char UnicodeToCp1252(char32_t codePoint) {
    if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) return static_cast<char>(codePoint);
    for (std::size_t k = 0; k < kHigh.size(); ++k) {
        if (kHigh[k] == codePoint) return static_cast<char>(0x80 + k);
    }
    return '?';
}

int Utf8SequenceAt(std::string_view text, std::size_t i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) return 1;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF; // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;  // no overlong forms
        if (lead == 0xED) high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    for (int k = 1; k < length; ++k) {
        if (i + k >= text.size()) return -1;
        const auto c = static_cast<unsigned char>(text[i + k]);
        if (k == 1 ? (c < low || c > high) : !Continuation(c)) return 0;
    }
    return length;
}

std::string ToUtf8(std::string_view cp1252) {
    std::string out;
    out.reserve(cp1252.size() + cp1252.size() / 4);
    for (std::size_t i = 0; i < cp1252.size();) {
        const int length = Utf8SequenceAt(cp1252, i);
        if (length >= 2) {
            out.append(cp1252.substr(i, static_cast<std::size_t>(length)));
            i += static_cast<std::size_t>(length);
        } else {
            AppendUtf8(out, Cp1252ToUnicode(static_cast<unsigned char>(cp1252[i])));
            ++i;
        }
    }
    return out;
}

std::size_t Utf8CutPoint(std::string_view utf8, std::size_t maxBytes) {
    if (utf8.size() <= maxBytes) return utf8.size();
    std::size_t cut = maxBytes;
    // Step back over continuation bytes to the start of the character that would be split.
    while (cut > 0 && Continuation(static_cast<unsigned char>(utf8[cut])))
        --cut;
    return cut;
}

std::string EncodeWireLine(std::string_view wireLine, IrcEncoding encoding) {
    if (encoding == IrcEncoding::Latin1) return std::string(wireLine);
    if (wireLine.size() >= 2 && wireLine.substr(wireLine.size() - 2) == "\r\n") wireLine.remove_suffix(2);
    std::string text = ToUtf8(wireLine);
    text.resize(Utf8CutPoint(text, kMaxWireLine - 2));
    text += "\r\n";
    return text;
}

std::string Utf8Decoder::Feed(std::string_view bytes) {
    std::string in = m_pending;
    in.append(bytes);
    m_pending.clear();
    std::string out;
    out.reserve(in.size());
    for (std::size_t i = 0; i < in.size();) {
        const int length = Utf8SequenceAt(in, i);
        if (length < 0) {
            m_pending = in.substr(i); // at most three bytes: the rest comes with the next read
            break;
        }
        if (length <= 1) {
            out += in[i]; // ASCII, or a byte that is not UTF-8: taken as Windows-1252
            ++i;
            continue;
        }
        out += UnicodeToCp1252(DecodeSequence(in, i, length));
        i += static_cast<std::size_t>(length);
    }
    return out;
}

} // namespace tallybot::irc
