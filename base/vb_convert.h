#pragma once
// Conversions with the semantics of the original platform: fixed-width conversions fail on
// non-numeric text or out-of-range values, decimals round half to even, and Val() reads the
// leading number of a text and never fails.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tallybot::vb {

// Error numbers as the original runtime reports them; they end up in the application log.
enum ErrorNumber : int {
    kInvalidCall = 5,
    kOverflow = 6,
    kSubscriptOutOfRange = 9,
    kDivisionByZero = 11,
    kTypeMismatch = 13,
};

class VbError : public std::runtime_error {
public:
    VbError(int number, const std::string& description) : std::runtime_error(description), m_number(number) {}
    int Number() const { return m_number; }

private:
    int m_number;
};

VbError TypeMismatch();        // 13 "Type mismatch"
VbError Overflow();            // 6 "Overflow"
VbError SubscriptOutOfRange(); // 9 "Subscript out of range"

// Banker's rounding: 0.5 -> 0, 1.5 -> 2, 2.5 -> 2, -1.5 -> -2.
double RoundHalfEven(double value);

// Parses a whole text as a number (surrounding blanks allowed, decimal point, exponent,
// "&H"/"&O" prefixes); throws TypeMismatch when the text is not a number.
double ParseNumber(std::string_view text);

// Fixed-width conversions of a text: ParseNumber, then round half to even, then a range check
// (Overflow). CInt: 16-bit signed, CByte: 0..255, CLng: 32-bit signed.
std::int16_t CInt(std::string_view text);
std::uint8_t CByte(std::string_view text);
std::int32_t CLng(std::string_view text);

// The same conversions of a number (rounding half to even, Overflow when out of range).
std::int16_t CInt(double value);
std::uint8_t CByte(double value);
std::int32_t CLng(double value);

// The numeric value of a text: leading blanks skipped, then the longest number prefix
// (sign, digits, decimal point, exponent, &H/&O); 0 when there is none. Never throws.
double Val(std::string_view text);

// The platform's integer read of an INI value: optional sign and leading decimal digits,
// 0 when the text does not start with digits. Wraps like the 32-bit platform call.
std::int32_t ProfileInt(std::string_view text, std::int32_t defaultValue);

// Decimal text of an integer, as Str$/CStr write it (no leading blank for CStr).
std::string CStr(long long value);

} // namespace tallybot::vb
