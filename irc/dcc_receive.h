#pragma once
// The receiving side of one DCC SEND: the offer as it arrived, where the file goes, how far it
// got. The data never takes the file past the offered size.

#include <cstdint>
#include <string>
#include <string_view>

namespace tallybot::irc {

enum class DccState { Idle, Offered, ResumeRequested, Connecting, Receiving };

struct DccReceive {
    DccState State = DccState::Idle;
    std::string Nick;          // sender
    std::string FileName;      // as offered (word 6)
    std::uint32_t Address = 0; // as offered, a 32-bit number
    long Port = 0;
    double Size = 0;            // offered size in bytes
    std::string Path;           // the file the operator chose
    std::uint64_t Position = 0; // bytes in the file

    // How many of n arriving bytes still fit below the offered size.
    std::size_t Fits(std::size_t n) const;
    bool Complete() const { return Size >= 0 && static_cast<double>(Position) >= Size; }
    // The acknowledgement: the position as a 32-bit number, high byte first.
    std::string Ack() const;
};

// The offered name reduced to a plain base name: the part after the last separator, without
// control characters, quotes or leading dots; "dcc_file" when nothing is left.
std::string SafeBaseName(std::string_view offered);

// A byte count with the pattern "###,###,###,###": digits grouped by commas, empty for zero.
std::string FormatByteCount(double size);

} // namespace tallybot::irc
