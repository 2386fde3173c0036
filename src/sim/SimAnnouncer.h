#pragma once

#include <QHostAddress>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

namespace tarnwick::sim {

// Sends the announcement once a second to one address, like a machine on the local network.
class SimAnnouncer : public QObject {
    Q_OBJECT

public:
    SimAnnouncer(QByteArray datagram, QHostAddress target, quint16 targetPort,
                 QObject* parent = nullptr);

private:
    void announce();

    const QByteArray m_datagram;
    const QHostAddress m_target;
    const quint16 m_targetPort;
    QUdpSocket m_socket;
    QTimer m_timer;
};

} // namespace tarnwick::sim
