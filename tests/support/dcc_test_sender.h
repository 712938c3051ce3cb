#pragma once
// The sending side of a DCC SEND, for tests of a receiver.
//
//   DccTestSender sender(content);                   // the file's bytes
//   ASSERT_TRUE(sender.Listen());                    // 127.0.0.1, a free port
//   fake.WriteLine(":bob!b@h PRIVMSG me :" + sender.Offer("report.txt"));
//   ASSERT_TRUE(sender.WaitForAck(content.size())); // the receiver acknowledged every byte
//
// Offer() is the CTCP text "\1DCC SEND <name> <address> <port> <size>\1" with the loopback address as a
// 32-bit decimal number. On the first connection the sender writes the content from the start position
// (0, or the position of an accepted resume: SetStartPosition) in one go, then reads the receiver's 4-byte
// big-endian acknowledgements; it closes the connection when the acknowledged count reaches the size.
// AcceptLine() builds the CTCP answer to a receiver's "DCC RESUME"; Disconnect() ends a transfer early.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

class QTcpServer;
class QTcpSocket;

namespace tallybot::testsupport {

class DccTestSender {
public:
    static constexpr std::uint32_t kLoopbackLong = 2130706433; // 127.0.0.1

    explicit DccTestSender(std::string content);
    ~DccTestSender();
    DccTestSender(const DccTestSender&) = delete;
    DccTestSender& operator=(const DccTestSender&) = delete;

    bool Listen();
    std::uint16_t Port() const;
    std::string Offer(const std::string& fileName) const;
    std::string AcceptLine(const std::string& fileName, std::uint64_t position) const;
    void SetStartPosition(std::uint64_t position) { m_start = position; }

    // Ends the transfer from the sending side (after the content, or in the middle of nothing).
    void Disconnect();

    bool WaitForConnection(std::chrono::milliseconds deadline = kDefaultDeadline);
    bool WaitForAck(std::uint64_t value, std::chrono::milliseconds deadline = kDefaultDeadline);
    std::uint64_t LastAck() const { return m_lastAck; }
    int Connections() const { return m_connections; }

private:
    void OnNewConnection();
    void OnReadyRead();

    std::string m_content;
    std::uint64_t m_start = 0;
    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<QTcpSocket> m_peer;
    std::string m_ackBytes;
    std::uint64_t m_lastAck = 0;
    int m_connections = 0;
};

} // namespace tallybot::testsupport
