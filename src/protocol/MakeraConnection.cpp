#include "protocol/MakeraConnection.h"

#include "protocol/DeadlineTimer.h"

#include <QCoreApplication>
#include <QTcpSocket>

namespace tarnwick {

namespace {

constexpr qint64 readSize = 65536;

QString closedByPeer() {
    return QCoreApplication::translate("tarnwick::MakeraConnection",
                                       "The machine closed the connection.");
}

} // namespace

Result<MakeraConnection*> MakeraConnection::create(const Machine& machine, QObject* parent) {
    static const bool registered = [] {
        qRegisterMetaType<tarnwick::MakeraPacket>();
        qRegisterMetaType<tarnwick::Error>();
        return true;
    }();
    Q_UNUSED(registered);

    if (machine.port == 0)
        return UploadError::rejected(tr("%1 is not a usable TCP port.").arg(machine.port));
    return new MakeraConnection(machine.ipAddress, machine.port, parent);
}

MakeraConnection::MakeraConnection(QString host, quint16 port, QObject* parent)
    : QObject(parent)
    , m_host(std::move(host))
    , m_port(port)
    , m_socket(new QTcpSocket(this))
    , m_connectTimer(new DeadlineTimer(this))
    , m_waitTimer(new DeadlineTimer(this))
    , m_readBuffer(readSize, Qt::Uninitialized) {
    QObject::connect(m_connectTimer, &DeadlineTimer::expired, this,
                     &MakeraConnection::connectDeadlineReached);
    QObject::connect(m_waitTimer, &DeadlineTimer::expired, this,
                     &MakeraConnection::waitDeadlineReached);

    QObject::connect(m_socket, &QTcpSocket::connected, this, &MakeraConnection::socketConnected);
    QObject::connect(m_socket, &QTcpSocket::errorOccurred, this, &MakeraConnection::socketFailed);
    QObject::connect(m_socket, &QTcpSocket::disconnected, this, &MakeraConnection::socketClosed);
    QObject::connect(m_socket, &QTcpSocket::readyRead, this, &MakeraConnection::receiveAvailable);
}

MakeraConnection::~MakeraConnection() {
    m_socket->disconnect(this);
    m_socket->abort();
}

void MakeraConnection::connect(std::chrono::milliseconds timeout) {
    if (m_connectState != ConnectState::NotStarted) {
        qWarning("MakeraConnection::connect called more than once");
        return;
    }
    m_connectState = ConnectState::Connecting;
    if (m_isClosed) {
        settleConnect(UploadError::cancelled());
        return;
    }
    m_connectTimer->start(timeout);
    m_socket->connectToHost(m_host, m_port);
}

std::optional<Error> MakeraConnection::send(const MakeraPacket& packet) {
    const Result<QByteArray> frame = packet.encoded();
    if (!frame.ok())
        return frame.error();
    if (m_peerGone && m_failure)
        return *m_failure;
    if (m_socket->state() != QAbstractSocket::ConnectedState) {
        if (m_failure && !m_failure->isUploadError(UploadError::Kind::Cancelled))
            return *m_failure;
        return PlatformError{PlatformError::Domain::Network, int(QAbstractSocket::OperationError),
                             QAbstractSocket::tr("Socket is not connected")};
    }
    if (m_socket->write(frame.value()) != frame.value().size())
        return socketError(m_socket->error());
    // Written at once rather than on the next turn of the event loop: the machine waits for it.
    // A peer that has gone shows here, and what ended the connection is the cause to report.
    m_socket->flush();
    if (m_peerGone && m_failure)
        return *m_failure;
    return std::nullopt;
}

void MakeraConnection::nextPacket(std::chrono::milliseconds timeout) {
    if (m_isWaiting) {
        qWarning("MakeraConnection::nextPacket called while a reader is waiting");
        return;
    }
    if (!m_received.empty()) {
        MakeraPacket packet = std::move(m_received.front());
        m_received.pop_front();
        deliverPacket(std::move(packet));
        return;
    }
    if (m_failure) {
        deliverWaitFailure(*m_failure);
        return;
    }
    m_isWaiting = true;
    m_waitTimer->start(timeout);
}

void MakeraConnection::cancel() {
    fail(UploadError::cancelled());
}

void MakeraConnection::close() {
    if (m_isClosed)
        return;
    m_isClosed = true;
    m_isReading = false;
    // Nothing the socket reports from here on reaches this object.
    m_socket->disconnect(this);
    m_socket->abort();
    if (m_connectState == ConnectState::Connecting)
        settleConnect(UploadError::cancelled());
    fail(UploadError::cancelled());
}

void MakeraConnection::socketConnected() {
    if (m_connectState != ConnectState::Connecting)
        return;
    m_isReading = true;
    // Every reply is small and awaited: holding it back for an acknowledgement only adds delay.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    settleConnect(std::nullopt);
    receiveAvailable();
}

void MakeraConnection::socketFailed(QAbstractSocket::SocketError error) {
    if (m_connectState == ConnectState::Connecting) {
        const PlatformError failure = socketError(error);
        settleConnect(failure);
        fail(failure);
        return;
    }
    // Bytes that came before the end are still delivered, before it.
    receiveAvailable();
    // Qt reads a reset from the peer as the end of the stream, on every platform: an orderly
    // close and a reset both arrive as RemoteHostClosedError and cannot be told apart. Either
    // way the machine's end ended the connection, which is what the user is told.
    if (error == QAbstractSocket::RemoteHostClosedError)
        peerEnded(UploadError::invalidResponse(closedByPeer()));
    else
        peerEnded(socketError(error));
}

void MakeraConnection::socketClosed() {
    if (!m_isReading)
        return;
    receiveAvailable();
    peerEnded(UploadError::invalidResponse(closedByPeer()));
}

void MakeraConnection::receiveAvailable() {
    while (m_isReading) {
        const qint64 count = m_socket->read(m_readBuffer.data(), readSize);
        if (count <= 0)
            return;
        ingest(QByteArrayView(m_readBuffer.constData(), count));
    }
}

void MakeraConnection::peerEnded(const Error& error) {
    m_isReading = false;
    m_peerGone = true;
    fail(error);
}

void MakeraConnection::ingest(QByteArrayView bytes) {
    m_parser.append(bytes);
    while (std::optional<MakeraPacket> packet = m_parser.next())
        m_received.push_back(std::move(*packet));
    if (m_isWaiting && !m_received.empty()) {
        m_isWaiting = false;
        m_waitTimer->stop();
        MakeraPacket packet = std::move(m_received.front());
        m_received.pop_front();
        deliverPacket(std::move(packet));
    }
}

void MakeraConnection::fail(const Error& error) {
    if (!m_failure)
        m_failure = error;
    if (m_isWaiting) {
        m_isWaiting = false;
        m_waitTimer->stop();
        deliverWaitFailure(error);
    }
}

// The outcome is decided here, at once; it is emitted from the event loop.
void MakeraConnection::settleConnect(std::optional<Error> failure) {
    m_connectState = ConnectState::Settled;
    m_connectTimer->stop();
    QMetaObject::invokeMethod(
        this,
        [this, failure = std::move(failure)] {
            if (failure)
                Q_EMIT connectFailed(*failure);
            else
                Q_EMIT connected();
        },
        Qt::QueuedConnection);
}

void MakeraConnection::connectDeadlineReached() {
    if (m_connectState != ConnectState::Connecting)
        return;
    settleConnect(UploadError::timedOut());
}

void MakeraConnection::deliverPacket(MakeraPacket packet) {
    QMetaObject::invokeMethod(
        this, [this, packet = std::move(packet)] { Q_EMIT packetReceived(packet); },
        Qt::QueuedConnection);
}

void MakeraConnection::deliverWaitFailure(Error error) {
    QMetaObject::invokeMethod(
        this, [this, error = std::move(error)] { Q_EMIT waitFailed(error); }, Qt::QueuedConnection);
}

void MakeraConnection::waitDeadlineReached() {
    if (!m_isWaiting)
        return;
    m_isWaiting = false;
    deliverWaitFailure(UploadError::timedOut());
}

PlatformError MakeraConnection::socketError(QAbstractSocket::SocketError error) const {
    return {PlatformError::Domain::Network, int(error), m_socket->errorString()};
}

} // namespace tarnwick
