#include "discovery/LANMachineScan.h"

#include "discovery/MakeraDiscoveryDatagram.h"
#include "discovery/SocketError.h"

#include <QTimer>
#include <QUdpSocket>

namespace tarnwick {

LANMachineScan::LANMachineScan(quint16 port, std::chrono::milliseconds duration, QObject* parent)
    : MachineScan(parent)
    , m_socket(new QUdpSocket(this))
    , m_listeningTime(new QTimer(this))
    , m_buffer(largestDatagram, Qt::Uninitialized) {
    // Shared, so that the desktop app and the command-line tool can listen at the same time.
    if (!m_socket->bind(QHostAddress::AnyIPv4, port,
                        QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        endSoon(socketError(*m_socket));
        return;
    }
    // The system's default buffer holds a few hundred announcements; thousands of machines
    // announcing within a fraction of a second would overflow it before a busy event loop reads.
    // The system may grant less (Linux caps it at net.core.rmem_max); the scan works either way.
    m_socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, receiveBufferSize);
    m_listening = true;
    connect(m_socket, &QUdpSocket::readyRead, this, &LANMachineScan::readPendingDatagrams);
    connect(m_socket, &QUdpSocket::errorOccurred, this, &LANMachineScan::handleSocketError);

    m_listeningTime->setSingleShot(true);
    m_listeningTime->setTimerType(Qt::PreciseTimer);
    connect(m_listeningTime, &QTimer::timeout, this, [this] { end(std::nullopt); });
    m_listeningTime->start(duration);
}

void LANMachineScan::cancel() {
    if (m_listening)
        endSoon(CancellationError{});
}

void LANMachineScan::readPendingDatagrams() {
    while (m_listening && m_socket->hasPendingDatagrams()) {
        const qint64 size = m_socket->readDatagram(m_buffer.data(), m_buffer.size());
        if (size < 0)
            return; // errorOccurred tells why
        handleAnnouncement(QByteArrayView(m_buffer.constData(), size));
    }
}

void LANMachineScan::handleAnnouncement(QByteArrayView payload) {
    const Result<Machine> machine = MakeraDiscoveryDatagram::decode(payload);
    if (!machine)
        return;
    const QString key = machine->id();
    if (m_endpoints.contains(key))
        return;
    m_endpoints.insert(key);
    Q_EMIT machineFound(machine.value());
}

void LANMachineScan::handleSocketError() {
    // A read that would block is not a failure of the listener.
    if (m_socket->error() == QAbstractSocket::TemporaryError)
        return;
    end(socketError(*m_socket));
}

void LANMachineScan::stopListening() {
    m_listening = false;
    m_listeningTime->stop();
    m_socket->close();
}

void LANMachineScan::end(const std::optional<Error>& failure) {
    if (!m_listening)
        return;
    stopListening();
    if (failure)
        Q_EMIT failed(*failure);
    else
        Q_EMIT finished();
}

// For outcomes decided inside a call of the owner: it hears of them from the event loop.
void LANMachineScan::endSoon(const Error& failure) {
    stopListening();
    QMetaObject::invokeMethod(
        this, [this, failure] { Q_EMIT failed(failure); }, Qt::QueuedConnection);
}

} // namespace tarnwick
