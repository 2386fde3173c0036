#pragma once

#include "app/Errors.h"
#include "app/Machine.h"
#include "app/Result.h"
#include "protocol/MakeraFrameParser.h"
#include "protocol/MakeraPacket.h"

#include <QAbstractSocket>
#include <QObject>

#include <chrono>
#include <deque>
#include <optional>

class QTcpSocket;

namespace tarnwick {

class DeadlineTimer;

// One TCP connection to one controller, for one upload. Every outcome arrives as a signal from
// the event loop, never from inside the call that asked for it, so the receiver may delete the
// connection in its slot. Deleting it closes the socket silently.
class MakeraConnection : public QObject {
    Q_OBJECT

public:
    // Fails with UploadError::rejected("{port} is not a usable TCP port.") for port 0.
    static Result<MakeraConnection*> create(const Machine& machine, QObject* parent = nullptr);
    ~MakeraConnection() override;

    // Once. Emits exactly one of connected() / connectFailed(error): the socket's error as a
    // PlatformError, UploadError::timedOut() at the deadline (never earlier), or
    // UploadError::cancelled() when close()d meanwhile. A failed connect leaves the socket
    // trying until close().
    void connect(std::chrono::milliseconds timeout);

    // Hands the whole frame to the socket at once; an oversized packet fails before any I/O.
    // Works after cancel(), so that a cancel packet can still go out. Once the peer has gone it
    // fails with the failure the connection recorded first, not with the refused write.
    std::optional<Error> send(const MakeraPacket& packet);

    // One reader at a time. Emits exactly one of packetReceived(packet) / waitFailed(error): the
    // oldest queued packet, else the recorded failure, else whatever comes first within
    // `timeout` (UploadError::timedOut() when nothing does; a packet arriving later is kept).
    void nextPacket(std::chrono::milliseconds timeout);

    // Records UploadError::cancelled() unless a failure is recorded and fails a pending wait at
    // once; the socket stays open until close().
    void cancel();
    // Closes the socket for good; otherwise like cancel(). Calling it again changes nothing.
    void close();

    const MakeraFrameParser& parser() const { return m_parser; }

Q_SIGNALS:
    void connected();
    void connectFailed(const tarnwick::Error& error);
    void packetReceived(const tarnwick::MakeraPacket& packet);
    void waitFailed(const tarnwick::Error& error);

private:
    enum class ConnectState {
        NotStarted,
        Connecting,
        Settled
    };

    MakeraConnection(QString host, quint16 port, QObject* parent);

    void socketConnected();
    void socketFailed(QAbstractSocket::SocketError error);
    void socketClosed();
    void receiveAvailable();
    void peerEnded(const Error& error);
    void ingest(QByteArrayView bytes);
    void fail(const Error& error);

    void settleConnect(std::optional<Error> failure);
    void connectDeadlineReached();
    void deliverPacket(MakeraPacket packet);
    void deliverWaitFailure(Error error);
    void waitDeadlineReached();

    PlatformError socketError(QAbstractSocket::SocketError error) const;

    const QString m_host;
    const quint16 m_port;
    QTcpSocket* m_socket;
    DeadlineTimer* m_connectTimer;
    DeadlineTimer* m_waitTimer;
    QByteArray m_readBuffer;

    MakeraFrameParser m_parser;
    std::deque<MakeraPacket> m_received;
    std::optional<Error> m_failure;
    ConnectState m_connectState = ConnectState::NotStarted;
    bool m_isReading = false;
    // The peer closed or reset the connection: nothing more can be sent or received.
    bool m_peerGone = false;
    bool m_isWaiting = false;
    bool m_isClosed = false;
};

} // namespace tarnwick
