#pragma once
// Text encoding on the IRC side. Inside the program text is Windows-1252 bytes (game names,
// templates, the pane); with UTF-8 chosen the conversion happens here, at the socket boundary:
// outgoing lines are converted and then cut to the wire limit on a character boundary, incoming
// bytes are decoded back. Latin-1 (the classic behaviour) passes bytes through untouched.

#include <cstddef>
#include <string>
#include <string_view>

namespace tallybot::irc {

enum class IrcEncoding { Latin1, Utf8 };

// "UTF-8" (any case, with or without the dash) selects UTF-8; everything else is Latin-1.
IrcEncoding ParseIrcEncoding(std::string_view name);

char32_t Cp1252ToUnicode(unsigned char byte);
// Appends the UTF-8 bytes of a code point below U+10000.
void AppendUtf8(std::string& out, char32_t codePoint);
// The Windows-1252 byte of a code point, or '?' when it has none.
char UnicodeToCp1252(char32_t codePoint);

// Length of the well-formed UTF-8 sequence starting at text[i]: 1 for ASCII, 2 to 4 for a
// multi-byte character, 0 when the bytes there are not UTF-8, -1 when they are the valid start
// of a sequence that the text ends in the middle of.
int Utf8SequenceAt(std::string_view text, std::size_t i);

// Windows-1252 to UTF-8. A well-formed multi-byte UTF-8 sequence already in the text (a name that
// a present-day game server sent in UTF-8) is kept as it is, not converted a second time.
std::string ToUtf8(std::string_view cp1252);

// The longest prefix of at most maxBytes that does not end inside a UTF-8 character.
std::size_t Utf8CutPoint(std::string_view utf8, std::size_t maxBytes);

// A wire line as the core framed it (CR LF at the end) in the chosen encoding, at most 512 bytes
// with its CR LF.
std::string EncodeWireLine(std::string_view wireLine, IrcEncoding encoding);

// Incoming UTF-8 back to Windows-1252. Bytes that are not UTF-8 (a client still sending Latin-1)
// pass through as they are; characters without a Windows-1252 byte become '?'. A character split
// between two reads is held until the rest arrives.
class Utf8Decoder {
public:
    std::string Feed(std::string_view bytes);
    void Reset() { m_pending.clear(); }

private:
    std::string m_pending;
};

} // namespace tallybot::irc
