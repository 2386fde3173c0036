#include "protocol/SocketPeek.h"

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <cerrno>
#include <sys/socket.h>
#endif

namespace tarnwick {

PendingInput peekSocket(qintptr descriptor) {
    if (descriptor == -1)
        return {};
    char byte = 0;
#ifdef Q_OS_WIN
    const int count = ::recv(SOCKET(descriptor), &byte, 1, MSG_PEEK);
    const int error = count < 0 ? ::WSAGetLastError() : 0;
    const bool wouldBlock = error == WSAEWOULDBLOCK;
#else
    const auto count = ::recv(int(descriptor), &byte, 1, MSG_PEEK);
    const int error = count < 0 ? errno : 0;
    const bool wouldBlock = error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
#endif
    if (count > 0)
        return {PendingInput::Kind::Data, {}};
    if (count == 0)
        return {PendingInput::Kind::Closed, {}};
    if (wouldBlock)
        return {};
    return {PendingInput::Kind::Failed, qt_error_string(error)};
}

} // namespace tarnwick
