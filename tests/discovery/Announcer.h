#pragma once

#include <QHostAddress>
#include <QUdpSocket>

namespace tarnwick::testing {

// A UDP port that was free a moment ago: bound to 0 by the system, then released.
inline quint16 freeUdpPort() {
    QUdpSocket probe;
    if (!probe.bind(QHostAddress::AnyIPv4, 0))
        qFatal("cannot bind a UDP socket: %s", qPrintable(probe.errorString()));
    return probe.localPort();
}

// Sends announcements from one sender address and port to a listener on 127.0.0.1.
class Announcer {
public:
    explicit Announcer(quint16 targetPort)
        : m_targetPort(targetPort) {
        if (!m_socket.bind(QHostAddress::LocalHost, 0))
            qFatal("cannot bind a UDP socket: %s", qPrintable(m_socket.errorString()));
    }

    bool send(const QByteArray& payload) {
        return m_socket.writeDatagram(payload, QHostAddress::LocalHost, m_targetPort) ==
               payload.size();
    }

private:
    QUdpSocket m_socket;
    quint16 m_targetPort;
};

} // namespace tarnwick::testing
