#include "CliRun.h"
#include "discovery/Announcer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace tarnwick::testing;

namespace {

// Runs "tarnwick-cli scan" on a free port and announces machines to it once it listens. A
// first announcement is repeated until the tool prints it, since until then it may not listen.
QStringList scanOutputLines(const QStringList& options, const QList<QByteArray>& announcements,
                            int* exitCode, QString* errors) {
    const quint16 port = freeUdpPort();
    QTemporaryDir configDir;
    QProcess process;
    prepareCli(process, configDir,
               QStringList{QStringLiteral("scan"), QStringLiteral("--port"), QString::number(port),
                           QStringLiteral("--seconds"), QStringLiteral("2.5")} +
                   options);
    process.start();
    if (!process.waitForStarted())
        return {};

    Announcer first(port);
    QByteArray output;
    for (int attempt = 0; attempt < 40 && !output.contains('\n'); ++attempt) {
        first.send("Probe,10.9.9.9,1,0");
        process.waitForReadyRead(50);
        output += process.readAllStandardOutput();
    }
    Announcer rest(port);
    for (const QByteArray& announcement : announcements)
        rest.send(announcement);

    if (!process.waitForFinished(20000))
        process.kill();
    output += process.readAllStandardOutput();
    *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    *errors = QString::fromUtf8(process.readAllStandardError());
    return QString::fromUtf8(output).split(QLatin1Char('\n'));
}

const QList<QByteArray> announcements{
    "Mill,192.168.1.20,4000,1",       "Mill,192.168.1.20,4000,0",
    "Mill,192.168.1.20,+04000,0",     "Second spindle,192.168.1.20,4001,0\r\n",
    "Tab\tand\nline,10.0.0.3,2222,0", "Probe,10.9.9.9,1,1",
};

} // namespace

class ScanCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void printsEachMachineOnceAsATabSeparatedLine() {
        int exitCode = -1;
        QString errors;
        const QStringList lines = scanOutputLines({}, announcements, &exitCode, &errors);
        const QStringList expected{
            QStringLiteral("Probe\t10.9.9.9:1\tdiscovered"),
            QStringLiteral("Mill\t192.168.1.20:4000\tbusy"),
            QStringLiteral("Second spindle\t192.168.1.20:4001\tdiscovered"),
            // Control characters of a name would break the line apart.
            QStringLiteral("Tab and line\t10.0.0.3:2222\tdiscovered"),
            QString(),
        };
        QCOMPARE(lines, expected);
        QCOMPARE(exitCode, 0);
        QCOMPARE(errors, QString());
    }

    void printsOneJsonObjectPerLine() {
        int exitCode = -1;
        QString errors;
        const QStringList lines =
            scanOutputLines({QStringLiteral("--json")}, announcements, &exitCode, &errors);
        QCOMPARE(exitCode, 0);
        QCOMPARE(errors, QString());
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.last(), QString());
        QCOMPARE(lines.at(1),
                 QStringLiteral(R"({"ipAddress":"192.168.1.20","name":"Mill","port":4000,)"
                                R"("status":"busy"})"));
        const QJsonObject named = QJsonDocument::fromJson(lines.at(3).toUtf8()).object();
        QCOMPARE(named.keys(), (QStringList{QStringLiteral("ipAddress"), QStringLiteral("name"),
                                            QStringLiteral("port"), QStringLiteral("status")}));
        QCOMPARE(named.value(QStringLiteral("name")).toString(), QStringLiteral("Tab\tand\nline"));
        QCOMPARE(named.value(QStringLiteral("port")).toInt(), 2222);
        QCOMPARE(named.value(QStringLiteral("status")).toString(), QStringLiteral("discovered"));
    }

    void aScanWithoutMachinesEndsNormally() {
        const CliResult result =
            runCli({QStringLiteral("scan"), QStringLiteral("--seconds"), QStringLiteral("0.3"),
                    QStringLiteral("--port"), QString::number(freeUdpPort())});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, QString());
    }

    void aPortThatCannotBeBoundFails() {
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        const CliResult result = runCli({QStringLiteral("scan"), QStringLiteral("--port"),
                                         QString::number(holder.localPort()),
                                         QStringLiteral("--seconds"), QStringLiteral("1")});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err,
                 QStringLiteral("Discovery failed: The bound address is already in use\n"));
    }

    void invalidSeconds_data() {
        QTest::addColumn<QString>("seconds");
        for (const char* text : {"abc", "0", "-1", "", "nan", "inf", "3601", "1,5", "2s"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void invalidSeconds() {
        QFETCH(QString, seconds);
        const CliResult result =
            runCli({QStringLiteral("scan"), QStringLiteral("--seconds"), seconds,
                    QStringLiteral("--port"), QString::number(freeUdpPort())});
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, QStringLiteral("--seconds takes a number of seconds greater than 0 "
                                            "and at most 3600.\n"));
    }

    void badUsage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("port 0") << QStringList{QStringLiteral("--port"), QStringLiteral("0")}
                                << QStringLiteral("--port takes a port number from 1 to 65535.\n");
        QTest::newRow("port too high")
            << QStringList{QStringLiteral("--port"), QStringLiteral("65536")}
            << QStringLiteral("--port takes a port number from 1 to 65535.\n");
        QTest::newRow("unknown option") << QStringList{QStringLiteral("--everything")}
                                        << QStringLiteral("Unknown option 'everything'.\n");
        QTest::newRow("argument") << QStringList{QStringLiteral("10.0.0.1")}
                                  << QStringLiteral(
                                         "scan takes no arguments besides its options.\n");
    }
    void badUsage() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const CliResult result = runCli(QStringList{QStringLiteral("scan")} + arguments);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.err, message);
    }

    void helpNamesTheOptions() {
        const CliResult result = runCli({QStringLiteral("scan"), QStringLiteral("--help")});
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.out.startsWith(
            QStringLiteral("Usage: tarnwick-cli scan [--seconds S] [--json]\n")));
        for (const char* option : {"--seconds <S>", "--json", "--port <N>"})
            QVERIFY2(result.out.contains(QLatin1String(option)), option);

        const CliResult overview = runCli({QStringLiteral("--help")});
        QVERIFY(overview.out.contains(QStringLiteral("\n  scan ")));
        QVERIFY(overview.out.contains(QStringLiteral("\n  check ")));
    }
};

QTEST_GUILESS_MAIN(ScanCommandTest)
#include "ScanCommandTest.moc"
