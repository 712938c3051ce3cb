#include "base/ini_file.h"

#include "base/vb_convert.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace tallybot::base {

namespace {

constexpr std::size_t npos = std::string::npos;

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

char FoldChar(char c) {
    auto u = static_cast<unsigned char>(c);
    if (u >= 'A' && u <= 'Z') return static_cast<char>(u + 0x20);
    // Latin-1 capitals (except the multiplication sign) and the Windows-1252 extras.
    if (u >= 0xC0 && u <= 0xDE && u != 0xD7) return static_cast<char>(u + 0x20);
    if (u == 0x8A || u == 0x8C || u == 0x8E) return static_cast<char>(u + 0x10);
    if (u == 0x9F) return static_cast<char>(0xFF);
    return c;
}

// A value in matching single or double quotes loses them, as the platform read does.
std::string_view StripQuotes(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string ThroughBuffer(std::string_view value) {
    return std::string(value.substr(0, std::min(value.size(), kProfileBufferSize - 1)));
}

} // namespace

std::string FoldName(std::string_view name) {
    std::string folded;
    folded.reserve(name.size());
    for (char c : Trim(name))
        folded += FoldChar(c);
    return folded;
}

IniFile::IniFile(std::string path) : m_path(std::move(path)) {}

void IniFile::Load() {
    m_lines.clear();
    std::ifstream in(m_path, std::ios::binary);
    if (!in) return;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    Parse(bytes.str());
}

void IniFile::Parse(std::string_view bytes) {
    m_lines.clear();
    std::size_t start = 0;
    while (start < bytes.size()) {
        std::size_t end = bytes.find('\n', start);
        std::size_t next = end == npos ? bytes.size() : end + 1;
        if (end == npos) end = bytes.size();
        if (end > start && bytes[end - 1] == '\r') --end;
        m_lines.push_back(ParseLine(std::string(bytes.substr(start, end - start))));
        start = next;
    }
}

IniFile::Line IniFile::ParseLine(std::string text) {
    Line line;
    std::string_view trimmed = Trim(text);
    if (!trimmed.empty() && trimmed.front() == '[') {
        std::string_view name = trimmed.substr(1);
        std::size_t close = name.find(']');
        if (close != npos) name = name.substr(0, close);
        line.kind = Kind::Section;
        line.name = FoldName(name);
    } else if (!trimmed.empty() && trimmed.front() != ';') {
        std::size_t eq = trimmed.find('=');
        line.kind = Kind::Key;
        line.name = FoldName(trimmed.substr(0, eq));
        if (eq != npos) line.value = std::string(Trim(trimmed.substr(eq + 1)));
    }
    line.text = std::move(text);
    return line;
}

std::size_t IniFile::FindSection(std::string_view section) const {
    std::string folded = FoldName(section);
    for (std::size_t i = 0; i < m_lines.size(); ++i)
        if (m_lines[i].kind == Kind::Section && m_lines[i].name == folded) return i;
    return npos;
}

std::size_t IniFile::FindKey(std::string_view section, std::string_view key) const {
    std::size_t i = FindSection(section);
    if (i == npos) return npos;
    std::string folded = FoldName(key);
    for (++i; i < m_lines.size() && m_lines[i].kind != Kind::Section; ++i)
        if (m_lines[i].kind == Kind::Key && m_lines[i].name == folded) return i;
    return npos;
}

std::string IniFile::GetString(std::string_view section, std::string_view key, std::string_view defaultValue) const {
    std::size_t i = FindKey(section, key);
    if (i == npos) {
        // The platform drops trailing blanks of the default.
        while (!defaultValue.empty() && defaultValue.back() == ' ')
            defaultValue.remove_suffix(1);
        return ThroughBuffer(defaultValue);
    }
    return ThroughBuffer(StripQuotes(m_lines[i].value));
}

std::int32_t IniFile::GetInt(std::string_view section, std::string_view key, std::int32_t defaultValue) const {
    std::size_t i = FindKey(section, key);
    if (i == npos) return defaultValue;
    return vb::ProfileInt(StripQuotes(m_lines[i].value), defaultValue);
}

void IniFile::WriteString(std::string_view section, std::string_view key, std::string_view value) {
    std::string keyName(Trim(key));
    std::string text = keyName + "=" + std::string(value);
    std::size_t i = FindKey(section, key);
    if (i != npos) {
        // Replaced in place; the key keeps the spelling it has in the file.
        std::string_view old = Trim(m_lines[i].text);
        std::string_view oldName = Trim(old.substr(0, old.find('=')));
        m_lines[i] = ParseLine(std::string(oldName) + "=" + std::string(value));
        return;
    }
    std::size_t s = FindSection(section);
    if (s == npos) {
        if (!m_lines.empty() && !Trim(m_lines.back().text).empty()) m_lines.push_back(ParseLine(""));
        m_lines.push_back(ParseLine("[" + std::string(Trim(section)) + "]"));
        m_lines.push_back(ParseLine(std::move(text)));
        return;
    }
    // New keys go after the section's last non-blank line.
    std::size_t insertAt = s + 1;
    for (std::size_t j = s + 1; j < m_lines.size() && m_lines[j].kind != Kind::Section; ++j)
        if (!Trim(m_lines[j].text).empty()) insertAt = j + 1;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(insertAt), ParseLine(std::move(text)));
}

void IniFile::WriteInt(std::string_view section, std::string_view key, long long value) {
    WriteString(section, key, vb::CStr(value));
}

std::string IniFile::Serialize() const {
    std::string bytes;
    for (const Line& line : m_lines) {
        bytes += line.text;
        bytes += "\r\n";
    }
    return bytes;
}

bool IniFile::Save() const {
    // A read-only file stays as it is, as the platform write leaves it.
    if (::access(m_path.c_str(), F_OK) == 0 && ::access(m_path.c_str(), W_OK) != 0) return false;
    // Written to a temporary file of a unique name beside the file, created afresh (never opened
    // through a link someone planted), and renamed over the file only when complete.
    std::string temp = m_path + ".XXXXXX";
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return false;
    // The file keeps its permissions; a new one is the owner's alone, as it may hold passwords.
    struct stat old {};
    if (::stat(m_path.c_str(), &old) == 0) ::fchmod(fd, old.st_mode & 07777);
    const std::string bytes = Serialize();
    bool written = true;
    for (std::size_t done = 0; written && done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        written = n > 0;
        if (written) done += static_cast<std::size_t>(n);
    }
    written = written && ::fsync(fd) == 0;
    const bool closed = ::close(fd) == 0;
    if (!written || !closed || std::rename(temp.c_str(), m_path.c_str()) != 0) {
        ::unlink(temp.c_str());
        return false;
    }
    return true;
}

} // namespace tallybot::base
