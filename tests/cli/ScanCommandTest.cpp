#include "CliRun.h"
#include "discovery/Announcer.h"

using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class ScanCommandTest : public QObject {
    Q_OBJECT

    const quint16 port = freeUdpPort();
    QUdpSocket holder;

private Q_SLOTS:
    // A row's own --seconds or --port wins over the earlier one.
    void run_data() {
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        const QString scan = u"scan --seconds 1.5 --port %1 "_s.arg(port);
        cliColumns();
        cliRow("lines", scan, 0,
               u"Mill\t192.168.1.20:4000\tbusy\nTab and line\t10.0.0.3:2222\tdiscovered\n"_s);
        cliRow("json", scan + u"--json"_s, 0,
               uR"({"ipAddress":"192.168.1.20","name":"Mill","port":4000,"status":"busy"}
{"ipAddress":"10.0.0.3","name":"Tab\tand\nline","port":2222,"status":"discovered"}
)"_s);
        cliRow("nothing heard", scan + u"--seconds 0.3 --port %1"_s.arg(freeUdpPort()), 0, {});
        // Whatever the platform calls a taken port, the tool passes it on.
        QUdpSocket second;
        QVERIFY(
            !second.bind(QHostAddress::AnyIPv4, holder.localPort(), QUdpSocket::DontShareAddress));
        cliRow("port taken", scan + u"--port %1"_s.arg(holder.localPort()), 1, {},
               u"Discovery failed: "_s + second.errorString() + u'\n');
        for (const char* seconds : {"abc", "0", "3601", "nan"})
            cliRow(seconds, scan + u"--seconds "_s + QLatin1String(seconds), 2, {},
                   u"--seconds takes a number of seconds greater than 0 and at most 3600.\n"_s);
    }
    void run() {
        compareCliRun([this](QProcess& tool) {
            // The tool listens once it has printed the first machine: the others follow it.
            announce(port, "Mill,192.168.1.20,4000,1");
            if (tool.bytesAvailable() > 0) {
                announce(port, "Mill,192.168.1.20,4000,0");
                announce(port, "Tab\tand\nline,10.0.0.3,2222,0");
            }
        });
    }
};

QTEST_GUILESS_MAIN(ScanCommandTest)
#include "ScanCommandTest.moc"
