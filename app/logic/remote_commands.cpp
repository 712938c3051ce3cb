// HandleRemote: the four commands another process can send to the running instance.
#include "app/logic/main_logic.h"
#include "base/vb_convert.h"

#include <vector>

namespace tallybot::app {

namespace {

// Every colon splits, as the classic Split does: "a::b" gives "a", "", "b".
std::vector<std::string> SplitFields(const std::string& text) {
    std::vector<std::string> fields(1);
    for (char c : text) {
        if (c == ':')
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

const std::string& Field(const std::vector<std::string>& fields, std::size_t index) {
    if (index >= fields.size()) throw vb::SubscriptOutOfRange();
    return fields[index];
}

} // namespace

void MainLogic::HandleRemote(const std::string& command) {
    Handler("HandleRemote", [&] {
        const std::string word = command.substr(0, 6);
        const int conn = m_settings.ConnState;
        if (word == "ConIRC") {
            if (conn == 1 || conn == 3) cmdIRCConnection_Click();
            if (command.size() > 6) {
                const auto fields = SplitFields(command);
                SetIrcText(&MainView::cmbIRCServer, Field(fields, 1));
                SetIrcText(&MainView::cmbIRCPort, Field(fields, 2));
                SetIrcText(&MainView::cmbIRCChannel, Field(fields, 3));
                SetIrcText(&MainView::cmbIRCNick, Field(fields, 4));
            }
            cmdIRCConnection_Click();
        } else if (word == "DisIRC") {
            if (conn == 1 || conn == 3) cmdIRCConnection_Click();
        } else if (word == "ConGam") {
            if (conn == 2 || conn == 3) m_query.cmdGamQuery_Click();
            // The length test reads this instance's own command line, not the message: a
            // "ConGam" with parameters changes the server only for an instance started with one.
            if (m_commandLine.size() > 6) {
                const auto fields = SplitFields(command);
                cmbGamServer_Change(Field(fields, 1) + ":" + Field(fields, 2));
            }
            m_query.cmdGamQuery_Click();
        } else if (word == "DisGam") {
            if (conn == 2 || conn == 3) m_query.cmdGamQuery_Click();
        } else {
            // Any other word does nothing; the log says what arrived.
            m_log->Log("frmMain", "HandleRemote", 0, "Unknown remote command ignored: " + command);
        }
    });
}

} // namespace tallybot::app
