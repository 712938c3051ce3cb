// DCC SEND receive: the offer, the operator's questions, RESUME/ACCEPT and the transfer.
//   PRIVMSG me :\1DCC SEND <file> <address as 32-bit decimal> <port> <size>\1
//   PRIVMSG me :\1DCC ACCEPT <file> <port> <position>\1

#include "irc/irc_line.h"
#include "irc/usc_irc.h"

#include <cctype>
#include <cmath>

namespace tallybot::irc {

namespace {

std::string Upper(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::uint32_t AddressWord(const std::string& word) {
    const double value = vb::Val(word);
    if (!std::isfinite(value) || value < 0) return 0;
    return static_cast<std::uint32_t>(std::fmod(std::floor(value), 4294967296.0));
}

long PortWord(const std::string& word) {
    const double value = vb::Val(word);
    if (!std::isfinite(value) || value < 0 || value > 65535) return 0;
    return static_cast<long>(value);
}

std::string Decimal(double value) {
    if (!std::isfinite(value) || std::fabs(value) >= 1e18) return "0";
    return std::to_string(static_cast<long long>(value));
}

} // namespace

void uscIRC::HandleDccOffer(const IrcLine& l) {
    const std::string subcommand = Upper(l.W[5]);
    const std::string& nick = l.Nick;
    if (subcommand == "ACCEPT") {
        if (m_dcc.State != DccState::ResumeRequested || nick != m_dcc.Nick) return;
        m_dcc.State = DccState::Connecting;
        m_transport.DccConnect(LongIP2Dotted(m_dcc.Address), static_cast<int>(m_dcc.Port));
        return;
    }
    if (subcommand != "SEND") return;

    std::string size = l.W[9];
    if (!size.empty()) size.pop_back(); // the closing delimiter
    DccReceive offer;
    offer.Nick = nick;
    offer.FileName = l.W[6];
    offer.Address = AddressWord(l.W[7]);
    offer.Port = PortWord(l.W[8]);
    offer.Size = vb::Val(size);
    offer.State = DccState::Offered;
    const bool busy = m_dcc.State == DccState::Connecting || m_dcc.State == DccState::Receiving;
    if (!busy) m_dcc = offer;

    auto decline = [&] {
        NotifyUser(nick, "Your DCC request has been declined for " + offer.FileName + " (" +
                             FormatByteCount(offer.Size) + " bytes)");
        if (!busy) m_dcc.State = DccState::Idle;
    };
    auto ask = [&](const char* title, const std::string& text) {
        return m_questions != nullptr && m_questions->AskYesNo(title, text);
    };

    std::optional<std::string> path;
    if (busy || m_files == nullptr ||
        !ask("Accept DCC?", "Incoming DCC file request from " + nick + "! Do you want to accept?") ||
        !(path = m_questions->ChooseSaveFile("Save file...", SafeBaseName(offer.FileName)))) {
        decline();
    } else {
        m_dcc.Path = *path;
        const auto local = m_files->FileLength(*path);
        bool fresh = !local.has_value();
        bool resume = false;
        if (local) {
            // The offered size is compared this way round on purpose.
            if (offer.Size >= static_cast<double>(*local)) {
                fresh = ask("Overwrite exisiting file?", "Do you want to overwrite the exisiting file?") &&
                        m_files->Remove(*path);
            } else {
                resume = ask("Resume transfer?", "Do you want to resume receiving this file?");
            }
        }
        if (fresh) {
            m_dcc.Position = 0;
            m_dcc.State = DccState::Connecting;
            m_transport.DccConnect(LongIP2Dotted(offer.Address), static_cast<int>(offer.Port));
        } else if (resume) {
            m_dcc.Position = *local;
            m_dcc.State = DccState::ResumeRequested;
            SendIRCData("PRIVMSG " + nick + " :\x01" + "DCC RESUME " + offer.FileName + " " +
                        std::to_string(offer.Port) + " " + std::to_string(*local) + "\x01");
        } else {
            decline();
        }
    }
    if (m_events.DCCRequest) {
        m_events.DCCRequest(nick, offer.FileName, LongIP2Dotted(offer.Address), offer.Port, offer.Size);
    }
}

void uscIRC::OnDccConnected() {
    Trapped("DCC", [&] {
        if (m_dcc.State != DccState::Connecting || m_files == nullptr) return;
        if (!m_files->Open(m_dcc.Path, m_dcc.Position > 0)) {
            m_transport.DccClose();
            m_dcc.State = DccState::Idle;
            ErrorOut("DCC", 75, "Path/File access error");
            return;
        }
        m_dcc.State = DccState::Receiving;
    });
}

void uscIRC::OnDccData(std::string_view bytes) {
    Trapped("DCC", [&] {
        if (m_dcc.State != DccState::Receiving || m_files == nullptr) return;
        const std::size_t n = m_dcc.Fits(bytes.size());
        if (n > 0 && !m_files->Write(bytes.substr(0, n))) {
            m_files->Close();
            m_transport.DccClose();
            m_dcc.State = DccState::Idle;
            ErrorOut("DCC", 75, "Path/File access error");
            return;
        }
        m_dcc.Position += n;
        m_transport.DccSend(m_dcc.Ack());
        if (m_events.DCCTransfer) {
            m_events.DCCTransfer(m_dcc.Path, m_dcc.Position,
                                 static_cast<std::uint64_t>(m_dcc.Size > 0 ? m_dcc.Size : 0));
        }
        if (m_dcc.Complete()) {
            m_files->Close();
            m_transport.DccClose();
            m_dcc.State = DccState::Idle;
            AddText("*** DCC transfer of " + m_dcc.FileName + " complete (" + std::to_string(m_dcc.Position) +
                        " bytes)",
                    m_props.EventColor);
        }
    });
}

void uscIRC::OnDccClosed() {
    if (m_dcc.State != DccState::Receiving && m_dcc.State != DccState::Connecting) return;
    const bool wasReceiving = m_dcc.State == DccState::Receiving;
    m_dcc.State = DccState::Idle;
    if (wasReceiving && m_files) m_files->Close();
    AddText("*** DCC transfer of " + m_dcc.FileName + " closed at " + std::to_string(m_dcc.Position) + " of " +
                Decimal(m_dcc.Size) + " bytes",
            m_props.EventColor);
}

void uscIRC::OnDccError(int number, const std::string& description) {
    ErrorOut("DCC", number, description);
    if (m_dcc.State == DccState::Receiving && m_files) m_files->Close();
    if (m_dcc.State == DccState::Receiving || m_dcc.State == DccState::Connecting) m_transport.DccClose();
    m_dcc.State = DccState::Idle;
}

} // namespace tallybot::irc
