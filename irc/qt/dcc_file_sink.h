#pragma once
// Where a DCC receive writes: one file at a time through QFile, flushed per write so a transfer cut off
// midway leaves what arrived on disk. Paths are the bytes the save dialog returned, read as Latin-1 like
// every text crossing into Qt.

#include "irc/irc_transport.h"

#include <memory>

class QFile;

namespace tallybot::irc {

class QtDccFileSink final : public DccFileSink {
public:
    QtDccFileSink();
    ~QtDccFileSink() override;

    std::optional<std::uint64_t> FileLength(const std::string& path) override;
    bool Remove(const std::string& path) override;
    bool Open(const std::string& path, bool append) override;
    bool Write(std::string_view bytes) override;
    void Close() override;

private:
    std::unique_ptr<QFile> m_file;
};

} // namespace tallybot::irc
