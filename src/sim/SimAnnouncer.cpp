#include "sim/SimAnnouncer.h"

namespace tarnwick::sim {

SimAnnouncer::SimAnnouncer(QByteArray datagram, QHostAddress target, quint16 targetPort,
                           QObject* parent)
    : QObject(parent)
    , m_datagram(std::move(datagram))
    , m_target(std::move(target))
    , m_targetPort(targetPort)
    , m_socket(this)
    , m_timer(this) {
    connect(&m_timer, &QTimer::timeout, this, &SimAnnouncer::announce);
    m_timer.start(std::chrono::seconds(1));
    QTimer::singleShot(0, this, &SimAnnouncer::announce);
}

void SimAnnouncer::announce() {
    m_socket.writeDatagram(m_datagram, m_target, m_targetPort);
}

} // namespace tarnwick::sim
