#include "irc/qt/dcc_file_sink.h"

#include <QFile>
#include <QFileInfo>

namespace tallybot::irc {
namespace {

QString PathText(const std::string& path) {
    return QString::fromLatin1(path.data(), static_cast<qsizetype>(path.size()));
}

} // namespace

QtDccFileSink::QtDccFileSink() = default;

QtDccFileSink::~QtDccFileSink() {
    Close();
}

std::optional<std::uint64_t> QtDccFileSink::FileLength(const std::string& path) {
    const QFileInfo info(PathText(path));
    if (!info.exists() || !info.isFile()) return std::nullopt;
    return static_cast<std::uint64_t>(info.size());
}

bool QtDccFileSink::Remove(const std::string& path) {
    return QFile::remove(PathText(path));
}

bool QtDccFileSink::Open(const std::string& path, bool append) {
    Close();
    m_file = std::make_unique<QFile>(PathText(path));
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | (append ? QIODevice::Append : QIODevice::Truncate);
    if (!m_file->open(mode)) {
        m_file.reset();
        return false;
    }
    return true;
}

bool QtDccFileSink::Write(std::string_view bytes) {
    if (!m_file) return false;
    const qint64 size = static_cast<qint64>(bytes.size());
    return m_file->write(bytes.data(), size) == size && m_file->flush();
}

void QtDccFileSink::Close() {
    if (m_file) m_file->close();
    m_file.reset();
}

} // namespace tallybot::irc
