#pragma once
// An INI file with private-profile semantics: section and key names match case-insensitively
// (Windows-1252 letters included), the first matching section and key win, values are trimmed and
// lose one pair of enclosing quotes, and a text read goes through a 255-character buffer so at
// most 254 characters survive. Writes replace a value in place or add the key (and section) when
// missing. The file is parsed once on Load and written once on Save; lines we do not touch
// (comments, unknown keys) are kept as they were. Reads LF or CR LF, writes CR LF.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::base {

constexpr std::size_t kProfileBufferSize = 255;

class IniFile {
public:
    explicit IniFile(std::string path = {});

    // Reads the file; a missing or unreadable file leaves the contents empty.
    void Load();
    void Parse(std::string_view bytes);

    std::string GetString(std::string_view section, std::string_view key, std::string_view defaultValue) const;
    std::int32_t GetInt(std::string_view section, std::string_view key, std::int32_t defaultValue) const;
    void WriteString(std::string_view section, std::string_view key, std::string_view value);
    void WriteInt(std::string_view section, std::string_view key, long long value);

    // Writes the whole file (created when missing). Returns false on failure, which callers ignore.
    bool Save() const;
    std::string Serialize() const;

    const std::string& Path() const { return m_path; }

private:
    enum class Kind { Other, Section, Key };
    struct Line {
        std::string text; // the line as it stands in the file, without its line end
        Kind kind = Kind::Other;
        std::string name;  // folded section or key name
        std::string value; // key value as read (trimmed)
    };

    // Index of the first matching key line, or npos.
    std::size_t FindKey(std::string_view section, std::string_view key) const;
    std::size_t FindSection(std::string_view section) const;
    static Line ParseLine(std::string text);

    std::string m_path;
    std::vector<Line> m_lines;
};

// Case folding for names in Windows-1252.
std::string FoldName(std::string_view name);

} // namespace tallybot::base
