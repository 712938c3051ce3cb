#pragma once
// Qt socket errors as the numbers the IRC pane shows ("[IRC] SERVER Error #10061: ..."): the Windows
// Sockets codes the control's users know from the original platform, so a log from either reads alike.

#include <QAbstractSocket>

namespace tallybot::irc {

int WinsockErrorNumber(QAbstractSocket::SocketError error);

} // namespace tallybot::irc
