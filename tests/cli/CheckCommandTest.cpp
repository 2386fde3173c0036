#include "CliRun.h"

#include <QTcpServer>
#include <QTest>

using namespace tarnwick::testing;

class CheckCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aListeningMachineAccepts() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        const QString target = QStringLiteral("127.0.0.1:%1").arg(server.serverPort());
        const CliResult result = runCli({QStringLiteral("check"), target});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, target + QStringLiteral(" accepted the connection.\n"));
        QCOMPARE(result.err, QString());
    }

    void theDefaultPortIs2222() {
        QTcpServer server;
        if (!server.listen(QHostAddress::LocalHost, 2222))
            QSKIP("port 2222 is taken on this system");
        const CliResult result = runCli({QStringLiteral("check"), QStringLiteral("127.0.0.1")});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QStringLiteral("127.0.0.1:2222 accepted the connection.\n"));
    }

    void aClosedPortFails() {
        quint16 port = 0;
        {
            QTcpServer server;
            QVERIFY(server.listen(QHostAddress::LocalHost, 0));
            port = server.serverPort();
        }
        const CliResult result =
            runCli({QStringLiteral("check"), QStringLiteral("127.0.0.1:%1").arg(port)});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, QStringLiteral("Connection check failed: Connection refused\n"));
    }

    void invalidAddresses_data() {
        QTest::addColumn<QString>("address");
        for (const char* text :
             {"192.168.1", "192.168.01.20", "localhost", "1.2.3.4:0", "1.2.3.4:65536",
              "1.2.3.4:", "1.2.3.4:+22", "1.2.3.4: 22", " 1.2.3.4", "::1", ""})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void invalidAddresses() {
        QFETCH(QString, address);
        const CliResult result = runCli({QStringLiteral("check"), address});
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, QStringLiteral("Enter a valid IPv4 address and port.\n"));
    }

    void exactlyOneAddress_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList{};
        QTest::newRow("two") << QStringList{QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2")};
    }
    void exactlyOneAddress() {
        QFETCH(QStringList, arguments);
        const CliResult result = runCli(QStringList{QStringLiteral("check")} + arguments);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.err, QStringLiteral("Usage: tarnwick-cli check ADDRESS[:PORT]\n"));
    }
};

QTEST_GUILESS_MAIN(CheckCommandTest)
#include "CheckCommandTest.moc"
