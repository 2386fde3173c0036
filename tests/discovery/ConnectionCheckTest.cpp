#include "discovery/NetworkMachineConnector.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;

namespace {

void row(const char* name, quint16 port, bool cancel, const std::optional<Error>& failure,
         int notBefore = 0) {
    QTest::newRow(name) << port << cancel << (failure ? QVariant::fromValue(*failure) : QVariant())
                        << notBefore;
}
Error refused(const QString& message) {
    return PlatformError{PlatformError::Domain::Network,
                         int(QAbstractSocket::ConnectionRefusedError), message};
}

} // namespace

class ConnectionCheckTest : public QObject {
    Q_OBJECT

    QTcpServer listening, stalled;
    QTcpSocket queued;

private Q_SLOTS:
    void outcome_data() {
        QTest::addColumn<quint16>("port");
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QVariant>("failure");
        QTest::addColumn<int>("notBefore");
        QVERIFY(listening.listen(QHostAddress::LocalHost, 0));
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        // An accept queue that is full and never drained: the system drops new handshakes.
        stalled.setListenBacklogSize(0);
        QVERIFY(stalled.listen(QHostAddress::LocalHost, 0));
        stalled.pauseAccepting();
        queued.connectToHost(QHostAddress::LocalHost, stalled.serverPort());
        QVERIFY(queued.waitForConnected());
        row("accepted", listening.serverPort(), false, {});
        row("refused", closed.serverPort(), false, refused(u"Connection refused"_s));
        row("port 0", 0, false, refused(u"Port 0 cannot be connected to."_s));
        row("cancelled", stalled.serverPort(), true, CancellationError{});
#ifdef Q_OS_LINUX
        // Only Linux drops the handshakes that a full accept queue cannot take.
        row("no handshake", stalled.serverPort(), false, UploadError::timedOut(), 3000);
#endif
    }
    void outcome() {
        QFETCH(quint16, port);
        QFETCH(bool, cancel);
        QFETCH(QVariant, failure);
        QFETCH(int, notBefore);
        QElapsedTimer clock;
        clock.start();
        const QPointer<ConnectionCheck> check = NetworkMachineConnector().checkConnection(
            {u"Mill"_s, {}, u"127.0.0.1"_s, port}, nullptr);
        QSignalSpy finished(check.data(), &Operation::finished);
        QSignalSpy failed(check.data(), &Operation::failed);
        if (cancel)
            check->cancel();
        QCOMPARE(finished.size() + failed.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size() + failed.size(), 1, 6000);
        QVERIFY2(clock.elapsed() >= notBefore, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(failed.isEmpty() ? QVariant() : failed.at(0).at(0), failure);
        QTRY_VERIFY(check.isNull()); // its outcome was its last word
    }
};

QTEST_GUILESS_MAIN(ConnectionCheckTest)
#include "ConnectionCheckTest.moc"
