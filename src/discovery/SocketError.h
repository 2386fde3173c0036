#pragma once

#include "app/Errors.h"

#include <QAbstractSocket>

namespace tarnwick {

// The socket's last error as the user reads it, with Qt's own message.
inline PlatformError socketError(const QAbstractSocket& socket) {
    return PlatformError{PlatformError::Domain::Network, int(socket.error()), socket.errorString()};
}

} // namespace tarnwick
