#include "protocol/MakeraConnection.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

using namespace tarnwick;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

using Outcomes = QList<std::variant<MakeraPacket, Error>>;

const MakeraPacket endPacket{MakeraPacketType::FileEnd, {}};
const QByteArray endFrame = QByteArray::fromHex("86680003B4B20C55AA");

Result<MakeraConnection*> createFor(quint16 port) {
    return MakeraConnection::create({{}, {}, QStringLiteral("127.0.0.1"), port, {}});
}

// Ends the connection with a reset rather than an orderly close.
void resetConnection(QTcpSocket& socket) {
    const linger noLinger{1, 0};
    ::setsockopt(decltype(::socket(0, 0, 0))(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
                 reinterpret_cast<const char*>(&noLinger), sizeof noLinger);
    socket.abort();
}

} // namespace

class MakeraConnectionTest : public QObject {
    Q_OBJECT

private:
    QTcpServer m_server;
    QTcpSocket* m_peer = nullptr;
    std::unique_ptr<MakeraConnection> m_connection;
    Outcomes m_outcomes; // what nextPacket() delivered, in order

    void create(quint16 port) {
        m_connection.reset(createFor(port).value());
        connect(m_connection.get(), &MakeraConnection::packetReceived, this,
                [this](const MakeraPacket& packet) { m_outcomes.append(packet); });
        connect(m_connection.get(), &MakeraConnection::waitFailed, this,
                [this](const Error& error) { m_outcomes.append(error); });
    }

    // Asks for the next packet and waits for its outcome, which never comes from the call itself.
    bool read(std::chrono::milliseconds timeout) {
        const qsizetype before = m_outcomes.size();
        m_connection->nextPacket(timeout);
        return m_outcomes.size() == before &&
               QTest::qWaitFor([&] { return m_outcomes.size() > before; }, 5000);
    }

    // The lone 0x86 sent last tells when the connection has parsed everything before it.
    bool peerSends(const QByteArray& bytes) {
        m_peer->write(bytes + QByteArray(1, '\x86'));
        return QTest::qWaitFor(
            [this] { return m_connection->parser().buffer() == QByteArrayView("\x86", 1); }, 5000);
    }

private Q_SLOTS:
    // Every test starts with an open connection; those about connecting make their own.
    void init() {
        QVERIFY(m_server.listen(QHostAddress::LocalHost, 0));
        create(m_server.serverPort());
        QSignalSpy ready(m_connection.get(), &MakeraConnection::connected);
        m_connection->connect(5s);
        QVERIFY(ready.isEmpty() && ready.wait(5000));
        QVERIFY(
            QTest::qWaitFor([this] { return (m_peer = m_server.nextPendingConnection()); }, 5000));
    }
    void cleanup() {
        m_connection.reset();
        delete std::exchange(m_peer, nullptr);
        m_server.close();
        m_outcomes.clear();
    }

    void portZeroIsRefused() {
        QCOMPARE(createFor(0).error(),
                 Error(UploadError::rejected(QStringLiteral("0 is not a usable TCP port."))));
    }

    void sendWritesWholeFramesAndNothingOversized() {
        QCOMPARE(m_connection->send({MakeraPacketType::FileData, QByteArray(8198, 'x')}),
                 Error(MakeraPacketError::oversized(8201)));
        QCOMPARE(m_connection->send({MakeraPacketType::FileCancel, {}}), std::nullopt);
        QByteArray received;
        QTRY_VERIFY((received += m_peer->readAll()).size() >= 9);
        QCOMPARE(received.toHex(' '), "86 68 00 03 b5 a2 2d 55 aa");
    }

    void packetsComeInOrderAndOutliveATimeOut() {
        QVERIFY(read(100ms));
        const MakeraPacket view{MakeraPacketType::FileView, QByteArray(1, 0)};
        QVERIFY(peerSends(view.encoded().value() + endFrame)); // one read, nobody waiting
        QVERIFY(read(0ms) && read(0ms));
        m_connection->nextPacket(10s);
        m_peer->write(endFrame);
        QTRY_COMPARE(m_outcomes.size(), 4);
        QCOMPARE(m_outcomes, (Outcomes{UploadError::timedOut(), view, endPacket, endPacket}));
    }

    // The end comes after every packet before it and stays the cause, close() and sends
    // included. Qt reads a reset as the end of the stream: both read as the machine closing.
    void theEndComesAfterItsPacketsAndStays_data() {
        QTest::addColumn<int>("end"); // 0 an orderly close, 1 a reset, 2 a network error
        QTest::addColumn<bool>("packetFirst");
        QTest::newRow("orderly close") << 0 << true;
        QTest::newRow("reset after a packet") << 1 << true;
        QTest::newRow("reset right after accept") << 1 << false;
        QTest::newRow("network error after a packet") << 2 << true;
    }
    void theEndComesAfterItsPacketsAndStays() {
        QFETCH(int, end);
        QFETCH(bool, packetFirst);
        if (packetFirst)
            QVERIFY(peerSends(endFrame));
        auto* socket = m_connection->findChild<QTcpSocket*>();
        if (end == 2)
            Q_EMIT socket->errorOccurred(QAbstractSocket::NetworkError);
        else
            end == 1 ? resetConnection(*m_peer) : m_peer->disconnectFromHost();
        const Error failure =
            end == 2
                ? Error(PlatformError{PlatformError::Domain::Network,
                                      int(QAbstractSocket::NetworkError), socket->errorString()})
                : UploadError::invalidResponse(u"The machine closed the connection."_s);
        QVERIFY(read(10s) && (!packetFirst || read(10s)));
        m_connection->close();
        QVERIFY(read(10s));
        QCOMPARE(m_outcomes, (packetFirst ? Outcomes{endPacket, failure, failure}
                                          : Outcomes{failure, failure}));
        QCOMPARE(m_connection->send({MakeraPacketType::FileCancel, {}}), failure);
    }

    void cancelOrCloseFailsAWaitingReader_data() {
        QTest::addColumn<bool>("closing");
        QTest::newRow("cancel") << false;
        QTest::newRow("close") << true;
    }
    void cancelOrCloseFailsAWaitingReader() {
        QFETCH(bool, closing);
        m_connection->nextPacket(60s);
        closing ? m_connection->close() : m_connection->cancel();
        QTRY_COMPARE(m_outcomes.size(), 1);
        QCOMPARE((m_connection->send({MakeraPacketType::FileCancel, {}}).has_value()), closing);
        m_connection->close(); // a second close() changes nothing
        QVERIFY(read(60s));
        QCOMPARE(m_outcomes, (Outcomes{UploadError::cancelled(), UploadError::cancelled()}));
    }

    void connectFails_data() {
        QTest::addColumn<bool>("silent");
        QTest::addColumn<Error>("expected");
        QTest::newRow("closed port")
            << false
            << Error(PlatformError{PlatformError::Domain::Network,
                                   int(QAbstractSocket::ConnectionRefusedError),
                                   QStringLiteral("Connection refused")});
        QTest::newRow("silent host") << true << Error(UploadError::timedOut());
    }
    void connectFails() {
        QFETCH(bool, silent);
#ifndef Q_OS_LINUX
        if (silent)
            QSKIP("Only Linux drops the handshakes that a full accept queue cannot take.");
#endif
        // A listener that never accepts, its queue filled: further handshakes go unanswered.
        QTcpServer silentServer;
        silentServer.setListenBacklogSize(0);
        silentServer.setMaxPendingConnections(0);
        QVERIFY(silentServer.listen(QHostAddress::LocalHost, 0));
        QTcpSocket fillers[3];
        for (QTcpSocket& filler : fillers)
            filler.connectToHost(QHostAddress::LocalHost, silentServer.serverPort());
        QTRY_COMPARE(fillers[0].state(), QAbstractSocket::ConnectedState);
        QTest::qWait(100);

        create(silent ? silentServer.serverPort() : m_server.serverPort());
        m_server.close();
        QSignalSpy failed(m_connection.get(), &MakeraConnection::connectFailed);
        QElapsedTimer clock;
        clock.start();
        // Windows answers a closed port only after retrying for about two seconds.
        m_connection->connect(silent ? 300ms : 5s);
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, 10000);
        QVERIFY(!silent || clock.elapsed() >= 300);
        QTEST(failed.at(0).at(0).value<Error>(), "expected");
    }
};

QTEST_GUILESS_MAIN(MakeraConnectionTest)
#include "MakeraConnectionTest.moc"
