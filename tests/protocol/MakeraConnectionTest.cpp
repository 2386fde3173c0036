#include "protocol/MakeraConnection.h"

#include "FrameBuilding.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {

Machine machineAt(quint16 port) {
    Machine machine;
    machine.name = QStringLiteral("Bench machine");
    machine.ipAddress = QStringLiteral("127.0.0.1");
    machine.port = port;
    return machine;
}

std::unique_ptr<MakeraConnection> makeConnection(quint16 port) {
    Result<MakeraConnection*> made = MakeraConnection::create(machineAt(port));
    if (!made.ok())
        return nullptr;
    return std::unique_ptr<MakeraConnection>(made.value());
}

Error errorOf(const QSignalSpy& spy, int index = 0) {
    return spy.at(index).at(0).value<Error>();
}

MakeraPacket packetOf(const QSignalSpy& spy, int index = 0) {
    return spy.at(index).at(0).value<MakeraPacket>();
}

// Everything a reader can receive from one connection, in arrival order.
struct Reader {
    explicit Reader(MakeraConnection* connection)
        : packets(connection, &MakeraConnection::packetReceived)
        , failures(connection, &MakeraConnection::waitFailed) {}
    int outcomes() const { return int(packets.count() + failures.count()); }

    QSignalSpy packets;
    QSignalSpy failures;
};

const MakeraPacket viewRequest{MakeraPacketType::FileView, QByteArray::fromHex("00")};
const MakeraPacket dataRequest{MakeraPacketType::FileData, QByteArray::fromHex("00000001")};
const MakeraPacket endPacket{MakeraPacketType::FileEnd, {}};

} // namespace

class MakeraConnectionTest : public QObject {
    Q_OBJECT

private:
    QTcpServer m_server;
    QPointer<QTcpSocket> m_peer;
    std::unique_ptr<MakeraConnection> m_connection;

    // A connection to the test's own server, connected, with the server's end in m_peer.
    bool openConnection() {
        m_connection = makeConnection(m_server.serverPort());
        if (!m_connection)
            return false;
        QSignalSpy ready(m_connection.get(), &MakeraConnection::connected);
        m_connection->connect(5s);
        if (!ready.wait(5000) ||
            !QTest::qWaitFor([this] { return m_server.hasPendingConnections(); }, 5000))
            return false;
        m_peer = m_server.nextPendingConnection();
        return m_peer != nullptr;
    }

    // Writes bytes from the server followed by a lone 0x86, and returns once the connection has
    // parsed them all (the lone byte then waits in its parser).
    bool peerSends(const QByteArray& bytes) {
        m_peer->write(bytes + QByteArray(1, '\x86'));
        m_peer->flush();
        return QTest::qWaitFor(
            [this] { return m_connection->parser().buffer() == QByteArrayView("\x86", 1); }, 5000);
    }

    QByteArray peerReceives(qsizetype count) {
        QByteArray received;
        (void)QTest::qWaitFor(
            [&] {
                received += m_peer->readAll();
                return received.size() >= count;
            },
            5000);
        return received;
    }

private Q_SLOTS:
    void init() { QVERIFY(m_server.listen(QHostAddress::LocalHost, 0)); }
    void cleanup() {
        m_connection.reset();
        delete m_peer;
        m_server.close();
    }

    void portZeroIsRefused() {
        const Result<MakeraConnection*> made = MakeraConnection::create(machineAt(0));
        QVERIFY(!made.ok());
        QCOMPARE(made.error(),
                 Error(UploadError::rejected(QStringLiteral("0 is not a usable TCP port."))));
        QCOMPARE(made.error().description(),
                 QStringLiteral("The machine rejected the upload: 0 is not a usable TCP port."));
    }

    void connectsOnceAndTheDeadlineChangesNothing() {
        m_connection = makeConnection(m_server.serverPort());
        QVERIFY(m_connection);
        QSignalSpy ready(m_connection.get(), &MakeraConnection::connected);
        QSignalSpy failed(m_connection.get(), &MakeraConnection::connectFailed);
        m_connection->connect(150ms);
        QCOMPARE(ready.count(), 0); // never from inside the call
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, 5000);
        QTest::qWait(300);
        QCOMPARE(ready.count(), 1);
        QCOMPARE(failed.count(), 0);
    }

    void sendPutsExactFramesOnTheWire() {
        QVERIFY(openConnection());
        QCOMPARE(m_connection->send({MakeraPacketType::FileCancel, {}}), std::nullopt);
        QCOMPARE(m_connection->send({MakeraPacketType::FileRetry, QByteArray(1, 1)}), std::nullopt);
        QCOMPARE(peerReceives(19).toHex(' '),
                 QByteArray::fromHex("86680003B5A22D55AA86680004B601784A55AA").toHex(' '));
    }

    void oversizedPacketFailsBeforeAnyIo() {
        QVERIFY(openConnection());
        const MakeraPacket tooLarge{MakeraPacketType::FileData, QByteArray(8198, 'x')};
        QCOMPARE(m_connection->send(tooLarge), Error(MakeraPacketError::oversized(8201)));
        QCOMPARE(m_connection->send(endPacket), std::nullopt);
        QCOMPARE(peerReceives(9), encodedFrame(endPacket));
        QTest::qWait(50);
        QCOMPARE(m_peer->bytesAvailable(), 0);
    }

    void twoPacketsOfOneReadComeOutInOrderWithoutWaiting() {
        QVERIFY(openConnection());
        QVERIFY(peerSends(QByteArray(encodedFrame(viewRequest) + encodedFrame(dataRequest))));

        Reader reader(m_connection.get());
        m_connection->nextPacket(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        m_connection->nextPacket(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        QCOMPARE(reader.packets.count(), 2);
        QCOMPARE(packetOf(reader.packets, 0), viewRequest);
        QCOMPARE(packetOf(reader.packets, 1), dataRequest);
    }

    void damagedBytesAreAbsorbedByTheParser() {
        QVERIFY(openConnection());
        const QByteArray damaged = buildFrame(6, 0xB2, QByteArray("abc"), quint16(0));
        QVERIFY(peerSends(QByteArray(QByteArray("noise") + damaged + encodedFrame(endPacket) +
                                     buildFrame(0x91, {}))));
        QCOMPARE(m_connection->parser().resynchronisedBytes(), 5 + damaged.size());
        QCOMPARE(m_connection->parser().ignoredFrames(), 1);

        Reader reader(m_connection.get());
        m_connection->nextPacket(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(packetOf(reader.packets), endPacket);
    }

    void packetAfterATimeOutIsKeptForTheNextCall() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        QElapsedTimer clock;
        clock.start();
        m_connection->nextPacket(100ms);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QVERIFY(clock.elapsed() >= 100);
        QCOMPARE(errorOf(reader.failures), Error(UploadError::timedOut()));

        QVERIFY(peerSends(encodedFrame(dataRequest)));
        QCOMPARE(reader.outcomes(), 1);
        m_connection->nextPacket(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        QCOMPARE(reader.packets.count(), 1);
        QCOMPARE(packetOf(reader.packets), dataRequest);
    }

    void waitingReaderGetsThePacketThatArrives() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        m_connection->nextPacket(10s);
        QTest::qWait(50);
        m_peer->write(encodedFrame(viewRequest));
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(packetOf(reader.packets), viewRequest);
    }

    void finalPacketComesBeforeTheClosedStream() {
        QVERIFY(openConnection());
        m_peer->write(encodedFrame(endPacket));
        m_peer->disconnectFromHost();
        QTRY_VERIFY_WITH_TIMEOUT(m_connection->findChild<QTcpSocket*>()->state() ==
                                     QAbstractSocket::UnconnectedState,
                                 5000);

        Reader reader(m_connection.get());
        m_connection->nextPacket(10s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(packetOf(reader.packets), endPacket);
        m_connection->nextPacket(10s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        const Error closed = errorOf(reader.failures);
        QCOMPARE(closed, Error(UploadError::invalidResponse(
                             QStringLiteral("The machine closed the connection."))));
        QCOMPARE(
            closed.description(),
            QStringLiteral(
                "The machine returned an invalid response: The machine closed the connection."));
    }

    void closedStreamFailsAWaitingReader() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        m_connection->nextPacket(10s);
        QTest::qWait(20);
        m_peer->disconnectFromHost();
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QVERIFY(errorOf(reader.failures).isUploadError(UploadError::Kind::InvalidResponse));
    }

    void readErrorWhileNobodyWaitsIsRecordedBehindQueuedPackets() {
        QVERIFY(openConnection());
        QVERIFY(peerSends(encodedFrame(viewRequest)));
        auto* socket = m_connection->findChild<QTcpSocket*>();
        Q_EMIT socket->errorOccurred(QAbstractSocket::NetworkError);
        const Error readError =
            PlatformError{PlatformError::Domain::Network, int(QAbstractSocket::NetworkError),
                          socket->errorString()};

        Reader reader(m_connection.get());
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(packetOf(reader.packets), viewRequest);
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        QCOMPARE(errorOf(reader.failures), readError);

        // The first failure stays: a later close does not replace it.
        m_connection->close();
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 3, 5000);
        QCOMPARE(errorOf(reader.failures, 1), readError);
    }

    void cancelFailsTheWaitingReaderButKeepsTheSocket() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        m_connection->nextPacket(60s);
        QTest::qWait(20);
        m_connection->cancel();
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(errorOf(reader.failures), Error(UploadError::cancelled()));

        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        QCOMPARE(errorOf(reader.failures, 1), Error(UploadError::cancelled()));

        // The machine can still be told that the upload is off.
        const MakeraPacket cancelPacket{MakeraPacketType::FileCancel, {}};
        QCOMPARE(m_connection->send(cancelPacket), std::nullopt);
        QCOMPARE(peerReceives(9), encodedFrame(cancelPacket));
        QCOMPARE(m_peer->state(), QAbstractSocket::ConnectedState);
    }

    void closeFailsTheWaitingReaderAndClosesTheSocket() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        QSignalSpy peerGone(m_peer.data(), &QTcpSocket::disconnected);
        m_connection->nextPacket(60s);
        QTest::qWait(20);
        m_connection->close();
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(errorOf(reader.failures), Error(UploadError::cancelled()));
        QTRY_COMPARE_WITH_TIMEOUT(peerGone.count(), 1, 5000);

        const std::optional<Error> refused = m_connection->send(endPacket);
        QVERIFY(refused && refused->is<PlatformError>());

        // A second close changes nothing: no signal, the same failure.
        m_connection->close();
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 2, 5000);
        QCOMPARE(errorOf(reader.failures, 1), Error(UploadError::cancelled()));
        QTest::qWait(50);
        QCOMPARE(reader.outcomes(), 2);
    }

    void closeTwiceKeepsTheFirstFailure() {
        QVERIFY(openConnection());
        m_peer->disconnectFromHost();
        QTRY_VERIFY_WITH_TIMEOUT(m_connection->findChild<QTcpSocket*>()->state() ==
                                     QAbstractSocket::UnconnectedState,
                                 5000);
        m_connection->close();
        m_connection->close();
        Reader reader(m_connection.get());
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QVERIFY(errorOf(reader.failures).isUploadError(UploadError::Kind::InvalidResponse));
    }

    void deletedConnectionEmitsNothing() {
        // An outcome already decided but not yet emitted dies with the connection.
        QVERIFY(openConnection());
        QVERIFY(peerSends(encodedFrame(viewRequest)));
        QSignalSpy peerGone(m_peer.data(), &QTcpSocket::disconnected);
        {
            Reader reader(m_connection.get());
            m_connection->nextPacket(0ms);
            m_connection.reset();
            QTRY_COMPARE_WITH_TIMEOUT(peerGone.count(), 1, 5000);
            QCOMPARE(reader.outcomes(), 0);
        }

        // So does a reader still waiting when its packet is on the way.
        delete m_peer;
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        m_connection->nextPacket(100ms);
        m_peer->write(encodedFrame(viewRequest));
        m_peer->flush();
        m_connection.reset();
        QTest::qWait(200);
        QCOMPARE(reader.outcomes(), 0);
    }

    // Packets and deadlines racing: every call gets exactly one outcome, and no packet is lost.
    void racingPacketAndDeadlineDeliverExactlyOneOutcome() {
        QVERIFY(openConnection());
        Reader reader(m_connection.get());
        QList<MakeraPacket> sent;
        for (int round = 0; round < 12; ++round) {
            const MakeraPacket packet{MakeraPacketType::FileData,
                                      QByteArray::number(round).rightJustified(4, '0')};
            sent.append(packet);
            m_connection->nextPacket(std::chrono::milliseconds(20 + round % 3));
            QTimer::singleShot(20, m_peer.data(), [peer = m_peer, packet] {
                peer->write(encodedFrame(packet));
                peer->flush();
            });
            QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), round + 1, 5000);
            QTest::qWait(15);
            QCOMPARE(reader.outcomes(), round + 1);
        }
        // Whatever lost its race is still queued, in order.
        while (reader.packets.count() < sent.size()) {
            const int before = reader.outcomes();
            m_connection->nextPacket(2s);
            QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), before + 1, 5000);
            QCOMPARE(reader.outcomes() - reader.packets.count(), reader.failures.count());
            QVERIFY(reader.failures.count() == 0 ||
                    errorOf(reader.failures, int(reader.failures.count() - 1)) ==
                        Error(UploadError::timedOut()));
            if (reader.packets.count() + reader.failures.count() > 40)
                QFAIL("packets were lost");
        }
        QList<MakeraPacket> received;
        for (const QList<QVariant>& arguments : reader.packets)
            received.append(arguments.at(0).value<MakeraPacket>());
        QCOMPARE(received, sent);
    }

    void refusedConnectionFailsWithTheSocketError() {
        const quint16 port = m_server.serverPort();
        m_server.close();
        m_connection = makeConnection(port);
        QSignalSpy ready(m_connection.get(), &MakeraConnection::connected);
        QSignalSpy failed(m_connection.get(), &MakeraConnection::connectFailed);
        m_connection->connect(5s);
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, 5000);
        QCOMPARE(ready.count(), 0);
        const Error error = errorOf(failed);
        QVERIFY(error.is<PlatformError>());
        QCOMPARE(error.get<PlatformError>()->domain, PlatformError::Domain::Network);
        QCOMPARE(error.get<PlatformError>()->code, int(QAbstractSocket::ConnectionRefusedError));
        QCOMPARE(error.description(), QStringLiteral("Connection refused"));

        // The failure is recorded: a reader learns it at once.
        Reader reader(m_connection.get());
        m_connection->nextPacket(60s);
        QTRY_COMPARE_WITH_TIMEOUT(reader.outcomes(), 1, 5000);
        QCOMPARE(errorOf(reader.failures), error);
    }

    void silentHostTimesOutNotEarlier() {
#ifndef Q_OS_LINUX
        QSKIP("Needs Linux's handling of a full accept queue");
#else
        // A listener that never accepts, its queue filled: further handshakes go unanswered.
        QTcpServer silent;
        silent.setListenBacklogSize(0);
        silent.setMaxPendingConnections(0);
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        std::vector<std::unique_ptr<QTcpSocket>> fillers;
        for (int i = 0; i < 3; ++i) {
            fillers.push_back(std::make_unique<QTcpSocket>());
            fillers.back()->connectToHost(QHostAddress::LocalHost, silent.serverPort());
        }
        QTRY_VERIFY_WITH_TIMEOUT(fillers.front()->state() == QAbstractSocket::ConnectedState, 5000);
        QTest::qWait(100);

        m_connection = makeConnection(silent.serverPort());
        QSignalSpy ready(m_connection.get(), &MakeraConnection::connected);
        QSignalSpy failed(m_connection.get(), &MakeraConnection::connectFailed);
        QElapsedTimer clock;
        clock.start();
        m_connection->connect(300ms);
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, 5000);
        QVERIFY2(clock.elapsed() >= 300, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(errorOf(failed), Error(UploadError::timedOut()));
        QCOMPARE(ready.count(), 0);

        // Closing while connecting ends the attempt as cancelled.
        std::unique_ptr<MakeraConnection> second = makeConnection(silent.serverPort());
        QSignalSpy secondFailed(second.get(), &MakeraConnection::connectFailed);
        second->connect(10s);
        QTest::qWait(50);
        second->close();
        QTRY_COMPARE_WITH_TIMEOUT(secondFailed.count(), 1, 2000);
        QCOMPARE(errorOf(secondFailed), Error(UploadError::cancelled()));
        QTest::qWait(50);
        QCOMPARE(secondFailed.count(), 1);
#endif
    }
};

QTEST_GUILESS_MAIN(MakeraConnectionTest)
#include "MakeraConnectionTest.moc"
