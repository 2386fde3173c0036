#pragma once

#include <QString>
#include <QtGlobal>

namespace tarnwick {

// What waits on a connected socket, looked at without taking it. Qt reports a peer's orderly close
// and a connection reset alike ("remote host closed"); the descriptor still tells them apart.
struct PendingInput {
    enum class Kind {
        Nothing,
        Data,
        Closed,
        Failed
    };

    Kind kind = Kind::Nothing;
    // The platform's text, for Failed.
    QString failure;
};

// `descriptor` is a non-blocking socket (QAbstractSocket::socketDescriptor()); -1 yields Nothing.
PendingInput peekSocket(qintptr descriptor);

} // namespace tarnwick
