#include "discovery/TcpConnectionCheck.h"

#include "discovery/SocketError.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTimer>

namespace tarnwick {

TcpConnectionCheck::TcpConnectionCheck(Machine machine, std::chrono::milliseconds timeout,
                                       QObject* parent)
    : ConnectionCheck(parent)
    , m_machine(std::move(machine))
    , m_socket(new QTcpSocket(this))
    , m_timeout(new QTimer(this)) {
    // Machines are on the local network: never through a proxy, whatever the environment says.
    m_socket->setProxy(QNetworkProxy::NoProxy);
    connect(m_socket, &QTcpSocket::connected, this, [this] { decide(std::nullopt); });
    connect(m_socket, &QTcpSocket::errorOccurred, this, [this] { decide(socketError(*m_socket)); });

    // A connection that never completes its handshake is decided by the time-out alone.
    m_timeout->setSingleShot(true);
    m_timeout->setTimerType(Qt::PreciseTimer);
    connect(m_timeout, &QTimer::timeout, this, [this] { decide(UploadError::timedOut()); });
    m_timeout->start(timeout);

    // Connecting from the event loop keeps every outcome out of the constructor.
    QMetaObject::invokeMethod(this, &TcpConnectionCheck::connectToMachine, Qt::QueuedConnection);
}

void TcpConnectionCheck::cancel() {
    if (!m_decided)
        decideSoon(CancellationError{});
}

void TcpConnectionCheck::connectToMachine() {
    if (m_decided)
        return;
    const QHostAddress address(m_machine.ipAddress);
    if (address.isNull()) {
        decide(PlatformError{PlatformError::Domain::Network,
                             int(QAbstractSocket::HostNotFoundError),
                             tr("%1 is not an IP address.").arg(m_machine.ipAddress)});
        return;
    }
    // The system would send a connection request to port 0 of a remote host; no controller
    // listens there.
    if (m_machine.port == 0) {
        decide(PlatformError{PlatformError::Domain::Network,
                             int(QAbstractSocket::ConnectionRefusedError),
                             tr("Port 0 cannot be connected to.")});
        return;
    }
    m_socket->connectToHost(address, m_machine.port);
}

void TcpConnectionCheck::stop() {
    m_decided = true;
    m_timeout->stop();
    m_socket->disconnect(this);
    m_socket->abort();
}

void TcpConnectionCheck::decide(const std::optional<Error>& failure) {
    if (m_decided)
        return;
    stop();
    if (failure)
        Q_EMIT failed(*failure);
    else
        Q_EMIT finished();
}

// For outcomes decided inside a call of the owner: it hears of them from the event loop.
void TcpConnectionCheck::decideSoon(const Error& failure) {
    stop();
    QMetaObject::invokeMethod(
        this, [this, failure] { Q_EMIT failed(failure); }, Qt::QueuedConnection);
}

} // namespace tarnwick
