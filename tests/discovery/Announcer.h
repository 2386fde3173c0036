#pragma once

#include <QUdpSocket>

namespace tarnwick::testing {

// A UDP port that was free a moment ago: bound to 0 by the system, then released.
inline quint16 freeUdpPort() {
    QUdpSocket probe;
    if (!probe.bind(QHostAddress::AnyIPv4, 0))
        qFatal("cannot bind a UDP socket: %s", qPrintable(probe.errorString()));
    return probe.localPort();
}

// Sends one announcement to 127.0.0.1:port, each from a sender port of its own.
inline bool announce(quint16 port, const QByteArray& payload) {
    QUdpSocket sender;
    return sender.writeDatagram(payload, QHostAddress::LocalHost, port) == payload.size();
}

} // namespace tarnwick::testing
