#include "tests/support/line_log.h"

#include <QRegularExpression>

namespace tallybot::testsupport {
namespace {

// Lines are bytes; Latin-1 maps each byte to one character, so control characters match as \x01 etc.
bool Matches(const QRegularExpression& re, const std::string& line) {
    return re.match(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size()))).hasMatch();
}

} // namespace

std::vector<std::string> LineLog::Feed(std::string_view bytes) {
    std::vector<std::string> added;
    m_carry.append(bytes);
    for (std::size_t end; (end = m_carry.find('\n')) != std::string::npos;) {
        std::string line = m_carry.substr(0, end);
        m_carry.erase(0, end + 1);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        added.push_back(line);
        m_lines.push_back(std::move(line));
    }
    return added;
}

std::optional<std::string> LineLog::WaitFor(const std::string& pattern, std::chrono::milliseconds deadline) {
    const QRegularExpression re(QString::fromStdString(pattern));
    std::optional<std::string> found;
    WaitUntil(
        [&] {
            for (; m_consumed < m_lines.size(); ++m_consumed) {
                if (Matches(re, m_lines[m_consumed])) {
                    found = m_lines[m_consumed++];
                    return true;
                }
            }
            return false;
        },
        deadline);
    return found;
}

bool LineLog::Pending(const std::string& pattern) const {
    const QRegularExpression re(QString::fromStdString(pattern));
    for (std::size_t i = m_consumed; i < m_lines.size(); ++i)
        if (Matches(re, m_lines[i])) return true;
    return false;
}

std::string LineLog::Transcript() const {
    std::string text;
    for (const std::string& line : m_lines)
        text += line + "\n";
    return text;
}

void LineLog::Clear() {
    m_carry.clear();
    m_lines.clear();
    m_consumed = 0;
}

std::string RegexQuote(std::string_view text) {
    std::string quoted;
    for (char c : text) {
        if (std::string_view(R"(\^$.|?*+()[]{})").find(c) != std::string_view::npos) quoted += '\\';
        quoted += c;
    }
    return quoted;
}

} // namespace tallybot::testsupport
