#include "base/vb_convert.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace tallybot::vb {

VbError TypeMismatch() {
    return VbError(kTypeMismatch, "Type mismatch");
}
VbError Overflow() {
    return VbError(kOverflow, "Overflow");
}
VbError SubscriptOutOfRange() {
    return VbError(kSubscriptOutOfRange, "Subscript out of range");
}

double RoundHalfEven(double value) {
    // nearbyint follows the default rounding mode, which is round-to-nearest-even.
    return std::nearbyint(value);
}

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A radix literal is typed by its value the way the runtime types "&H" literals: up to 0xFFFF it
// is a 16-bit integer (so &HFFFF is -1), otherwise a 32-bit one.
double RadixValue(unsigned long long raw) {
    if (raw <= 0xFFFFu) return static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(raw)));
    return static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(raw)));
}

struct Scan {
    double value = 0;
    std::size_t length = 0; // characters consumed; 0 when there is no number
    bool overflow = false;
};

// Reads "&H..." / "&O..." / "&..." (octal) at the start of text.
Scan ScanRadix(std::string_view text) {
    Scan scan;
    if (text.size() < 2 || text[0] != '&') return scan;
    std::size_t pos = 1;
    int base = 8;
    if (text[1] == 'h' || text[1] == 'H') {
        base = 16;
        pos = 2;
    } else if (text[1] == 'o' || text[1] == 'O') {
        pos = 2;
    }
    unsigned long long raw = 0;
    std::size_t digits = 0;
    while (pos < text.size()) {
        int d = HexDigit(text[pos]);
        if (d < 0 || d >= base) break;
        raw = raw * static_cast<unsigned>(base) + static_cast<unsigned>(d);
        if (raw > 0xFFFFFFFFull) scan.overflow = true;
        ++digits;
        ++pos;
    }
    if (digits == 0) return scan;
    scan.value = RadixValue(raw & 0xFFFFFFFFull);
    scan.length = pos;
    return scan;
}

// Reads [sign] digits [. digits] [(e|d) [sign] digits] at the start of text.
Scan ScanDecimal(std::string_view text) {
    Scan scan;
    std::string buffer;
    std::size_t pos = 0;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) buffer += text[pos++];
    std::size_t mantissaDigits = 0;
    while (pos < text.size() && IsDigit(text[pos])) {
        buffer += text[pos++];
        ++mantissaDigits;
    }
    if (pos < text.size() && text[pos] == '.') {
        buffer += text[pos++];
        while (pos < text.size() && IsDigit(text[pos])) {
            buffer += text[pos++];
            ++mantissaDigits;
        }
    }
    if (mantissaDigits == 0) return scan;
    std::size_t end = pos;
    if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E' || text[pos] == 'd' || text[pos] == 'D')) {
        std::string exponent = "e";
        std::size_t epos = pos + 1;
        if (epos < text.size() && (text[epos] == '+' || text[epos] == '-')) exponent += text[epos++];
        std::size_t expDigits = 0;
        while (epos < text.size() && IsDigit(text[epos])) {
            exponent += text[epos++];
            ++expDigits;
        }
        if (expDigits > 0) {
            buffer += exponent;
            end = epos;
        }
    }
    scan.value = std::strtod(buffer.c_str(), nullptr);
    scan.overflow = std::isinf(scan.value);
    scan.length = end;
    return scan;
}

Scan ScanNumber(std::string_view text) {
    if (!text.empty() && text[0] == '&') return ScanRadix(text);
    return ScanDecimal(text);
}

template <class T> T Narrow(double value) {
    if (std::isnan(value)) throw Overflow();
    double rounded = RoundHalfEven(value);
    if (rounded < static_cast<double>(std::numeric_limits<T>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<T>::max()))
        throw Overflow();
    return static_cast<T>(rounded);
}

} // namespace

double ParseNumber(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    Scan scan = ScanNumber(text);
    if (scan.length == 0 || scan.length != text.size()) throw TypeMismatch();
    if (scan.overflow) throw Overflow();
    return scan.value;
}

std::int16_t CInt(std::string_view text) {
    return Narrow<std::int16_t>(ParseNumber(text));
}
std::uint8_t CByte(std::string_view text) {
    return Narrow<std::uint8_t>(ParseNumber(text));
}
std::int32_t CLng(std::string_view text) {
    return Narrow<std::int32_t>(ParseNumber(text));
}

std::int16_t CInt(double value) {
    return Narrow<std::int16_t>(value);
}
std::uint8_t CByte(double value) {
    return Narrow<std::uint8_t>(value);
}
std::int32_t CLng(double value) {
    return Narrow<std::int32_t>(value);
}

double Val(std::string_view text) {
    // Val ignores blanks, tabs and line feeds anywhere in the text ("1 2" is 12).
    std::string packed;
    packed.reserve(text.size());
    for (char c : text)
        if (c != ' ' && c != '\t' && c != '\n') packed += c;
    Scan scan = ScanNumber(packed);
    return scan.length == 0 ? 0.0 : scan.value;
}

std::int32_t ProfileInt(std::string_view text, std::int32_t defaultValue) {
    if (text.empty()) return defaultValue;
    std::size_t pos = 0;
    while (pos < text.size() && static_cast<unsigned char>(text[pos]) <= ' ')
        ++pos;
    bool negative = false;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
    std::uint32_t result = 0;
    while (pos < text.size() && IsDigit(text[pos])) {
        result = result * 10u + static_cast<std::uint32_t>(text[pos] - '0');
        ++pos;
    }
    if (negative) result = 0u - result;
    return static_cast<std::int32_t>(result);
}

std::string CStr(long long value) {
    return std::to_string(value);
}

} // namespace tallybot::vb
