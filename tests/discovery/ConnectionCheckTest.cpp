#include "StalledListener.h"
#include "discovery/NetworkMachineConnector.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {

Machine machineAt(quint16 port, const QString& address = QStringLiteral("127.0.0.1")) {
    return Machine{QStringLiteral("Mill"), std::nullopt, address, port,
                   Machine::ConnectionStatus::Connecting};
}

// A port on 127.0.0.1 where nothing listens.
quint16 closedPort() {
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        qFatal("cannot listen: %s", qPrintable(server.errorString()));
    return server.serverPort();
}

struct CheckRecorder {
    explicit CheckRecorder(ConnectionCheck* check)
        : finished(check, &Operation::finished)
        , failed(check, &Operation::failed) {}

    int outcomes() const { return int(finished.size() + failed.size()); }
    Error failure() const { return failed.at(0).at(0).value<Error>(); }

    QSignalSpy finished;
    QSignalSpy failed;
};

} // namespace

class ConnectionCheckTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<Error>(); }

    void aListeningMachineAcceptsAndIsLeftAtOnce() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(server.serverPort()), nullptr));
        CheckRecorder recorder(check.get());
        QCOMPARE(recorder.outcomes(), 0);

        QVERIFY(recorder.finished.wait(2000));
        QTRY_VERIFY(server.hasPendingConnections());
        QTcpSocket* accepted = server.nextPendingConnection();
        QVERIFY(accepted);
        if (accepted->state() == QAbstractSocket::ConnectedState)
            QVERIFY(accepted->waitForDisconnected(2000));
        QCOMPARE(accepted->readAll(), QByteArray());
        QCOMPARE(recorder.failed.size(), 0);
    }

    void oneOutcomeEvenWhenTheTimeOutPasses() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        NetworkMachineConnector connector(200ms);
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(server.serverPort()), nullptr));
        CheckRecorder recorder(check.get());
        QVERIFY(recorder.finished.wait(2000));
        check->cancel();
        QTest::qWait(400);
        QCOMPARE(recorder.finished.size(), 1);
        QCOMPARE(recorder.failed.size(), 0);
    }

    void aClosedPortFailsWithTheSocketError() {
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(closedPort()), nullptr));
        CheckRecorder recorder(check.get());
        QVERIFY(recorder.failed.wait(2000));
        QCOMPARE(recorder.failure(),
                 Error(PlatformError{PlatformError::Domain::Network,
                                     int(QAbstractSocket::ConnectionRefusedError),
                                     QStringLiteral("Connection refused")}));
        QTest::qWait(100);
        QCOMPARE(recorder.outcomes(), 1);
    }

    void portZeroIsRefusedWithoutConnecting() {
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> check(connector.checkConnection(machineAt(0), nullptr));
        CheckRecorder recorder(check.get());
        QCOMPARE(recorder.outcomes(), 0);
        QVERIFY(recorder.failed.wait(2000));
        const Error error = recorder.failure();
        QVERIFY(error.is<PlatformError>());
        QCOMPARE(error.description(), QStringLiteral("Port 0 cannot be connected to."));
    }

    void aTextThatIsNoAddressIsRefused() {
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(2222, QStringLiteral("mill.invalid")), nullptr));
        CheckRecorder recorder(check.get());
        QVERIFY(recorder.failed.wait(2000));
        const Error error = recorder.failure();
        QVERIFY(error.is<PlatformError>());
        QCOMPARE(error.description(), QStringLiteral("mill.invalid is not an IP address."));
    }

    void anUnansweredHandshakeTimesOutAfterThreeSeconds() {
#ifdef Q_OS_LINUX
        StalledListener stalled;
        if (!stalled.isStalled())
            QSKIP("the system answered every connection request");
        NetworkMachineConnector connector;
        QElapsedTimer clock;
        clock.start();
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(stalled.port()), nullptr));
        CheckRecorder recorder(check.get());
        QVERIFY(recorder.failed.wait(6000));
        const qint64 elapsed = clock.elapsed();
        QVERIFY2(elapsed >= 3000, qPrintable(QString::number(elapsed)));
        QCOMPARE(recorder.failure(), Error(UploadError::timedOut()));
        QCOMPARE(recorder.failure().description(),
                 QStringLiteral("The machine did not respond before the upload timed out."));
        QCOMPARE(recorder.finished.size(), 0);
#else
        QSKIP("needs a listener whose accept queue can be filled");
#endif
    }

    void cancelEndsAPendingCheck() {
#ifdef Q_OS_LINUX
        StalledListener stalled;
        if (!stalled.isStalled())
            QSKIP("the system answered every connection request");
        NetworkMachineConnector connector(300ms);
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(stalled.port()), nullptr));
        CheckRecorder recorder(check.get());
        QTest::qWait(50);
        check->cancel();
        QCOMPARE(recorder.outcomes(), 0);
        QVERIFY(recorder.failed.wait(1000));
        QCOMPARE(recorder.failure(), Error(CancellationError{}));
        // The time-out that would have followed changes nothing.
        QTest::qWait(500);
        QCOMPARE(recorder.outcomes(), 1);
#else
        QSKIP("needs a listener whose accept queue can be filled");
#endif
    }

    void cancelBeforeConnectingMakesNoConnection() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> check(
            connector.checkConnection(machineAt(server.serverPort()), nullptr));
        CheckRecorder recorder(check.get());
        check->cancel();
        QVERIFY(recorder.failed.wait(1000));
        QCOMPARE(recorder.failure(), Error(CancellationError{}));
        QTest::qWait(300);
        QVERIFY(!server.hasPendingConnections());
        QCOMPARE(recorder.outcomes(), 1);
    }

    void aDeletedCheckEmitsNothing() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        NetworkMachineConnector connector(100ms);
        QObject owner;
        QPointer<ConnectionCheck> check =
            connector.checkConnection(machineAt(server.serverPort()), &owner);
        CheckRecorder recorder(check);
        delete check;
        QTest::qWait(300);
        QCOMPARE(recorder.outcomes(), 0);
    }

    void checksRunSideBySide() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        NetworkMachineConnector connector;
        std::unique_ptr<ConnectionCheck> first(
            connector.checkConnection(machineAt(server.serverPort()), nullptr));
        std::unique_ptr<ConnectionCheck> second(
            connector.checkConnection(machineAt(server.serverPort()), nullptr));
        std::unique_ptr<ConnectionCheck> refused(
            connector.checkConnection(machineAt(closedPort()), nullptr));
        CheckRecorder one(first.get());
        CheckRecorder two(second.get());
        CheckRecorder three(refused.get());
        QTRY_COMPARE(one.outcomes() + two.outcomes() + three.outcomes(), 3);
        QCOMPARE(one.finished.size(), 1);
        QCOMPARE(two.finished.size(), 1);
        QCOMPARE(three.failed.size(), 1);
        QVERIFY(three.failure().is<PlatformError>());

        int connections = 0;
        QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
            while (server.nextPendingConnection())
                ++connections;
        });
        while (server.nextPendingConnection())
            ++connections;
        QTest::qWait(200);
        QCOMPARE(connections, 2);
    }
};

QTEST_GUILESS_MAIN(ConnectionCheckTest)
#include "ConnectionCheckTest.moc"
