#include "irc/qt/socket_errors.h"

namespace tallybot::irc {

int WinsockErrorNumber(QAbstractSocket::SocketError error) {
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return 10061; // WSAECONNREFUSED
    case QAbstractSocket::RemoteHostClosedError:
        return 10053; // WSAECONNABORTED
    case QAbstractSocket::HostNotFoundError:
        return 11001; // WSAHOST_NOT_FOUND
    case QAbstractSocket::SocketAccessError:
        return 10013; // WSAEACCES: a privileged port such as 113
    case QAbstractSocket::SocketResourceError:
        return 10055; // WSAENOBUFS
    case QAbstractSocket::SocketTimeoutError:
        return 10060; // WSAETIMEDOUT
    case QAbstractSocket::DatagramTooLargeError:
        return 10040; // WSAEMSGSIZE
    case QAbstractSocket::NetworkError:
        return 10050; // WSAENETDOWN
    case QAbstractSocket::AddressInUseError:
        return 10048; // WSAEADDRINUSE
    case QAbstractSocket::SocketAddressNotAvailableError:
        return 10049; // WSAEADDRNOTAVAIL
    case QAbstractSocket::UnsupportedSocketOperationError:
        return 10045; // WSAEOPNOTSUPP
    case QAbstractSocket::TemporaryError:
        return 10035; // WSAEWOULDBLOCK
    default:
        return 10054; // WSAECONNRESET: any other failure of an established or pending connection
    }
}

} // namespace tallybot::irc
