#include "BuildConfig.h"
#include "CliRun.h"
#include "app/Errors.h"
#include "discovery/Announcer.h"
#include "support/TestFiles.h"
#include "update/FeedServer.h"

#include <QTcpServer>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

// scan, check, inspect and check-update, each run as a user would.
class CommandsTest : public QObject {
    Q_OBJECT

    const quint16 port = freeUdpPort();
    QUdpSocket holder;
    QTcpServer listening;
    QTemporaryDir dir;

private Q_SLOTS:
    // A row's own --seconds or --port wins over the earlier one.
    void run_data() {
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        QVERIFY(listening.listen(QHostAddress::LocalHost, 0));
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString accepting = u"127.0.0.1:%1"_s.arg(listening.serverPort());
        const QString scan = u"scan --seconds 1.5 --port %1 "_s.arg(port);
        cliColumns();
        cliRow("lines", scan, 0,
               u"Mill\t192.168.1.20:4000\tbusy\nTab and line\t10.0.0.3:2222\tdiscovered\n"_s);
        cliRow("json", scan + u"--json"_s, 0,
               uR"({"ipAddress":"192.168.1.20","name":"Mill","port":4000,"status":"busy"}
{"ipAddress":"10.0.0.3","name":"Tab\tand\nline","port":2222,"status":"discovered"}
)"_s);
        // Whatever the platform calls a taken port, the tool passes it on.
        QUdpSocket second;
        QVERIFY(
            !second.bind(QHostAddress::AnyIPv4, holder.localPort(), QUdpSocket::DontShareAddress));
        cliRow("port taken", scan + u"--port %1"_s.arg(holder.localPort()), 1, {},
               u"Discovery failed: "_s + second.errorString() + u'\n');
        cliRow("too long", scan + u"--seconds 3601"_s, 2, {},
               u"--seconds takes a number of seconds greater than 0 and at most 3600.\n"_s);
        cliRow("accepted", u"check "_s + accepting, 0,
               accepting + u" accepted the connection.\n"_s);
        cliRow("refused", u"check 127.0.0.1:%1"_s.arg(closed.serverPort()), 1, {},
               u"Connection check failed: Connection refused\n"_s);
        cliRow("port 0", u"check 1.2.3.4:0"_s, 2, {}, u"Enter a valid IPv4 address and port.\n"_s);

        const QString job = writeFile(dir, u"job.nc"_s,
                                      "G20 T3 M6 S8000 M3\nG0 X0 Y0 Z0.5\nG1 Z-0.1 F10\n"
                                      "G2 X1 Y1 R-1\nM30\n")
                                .toLocalFile();
        // Inches in, millimetres out; the long arc swings out to X -1 and Y 2 inches.
        cliRow("inspect", u"inspect --json "_s + job, 0,
               uR"({"cutting":{"max":[25.4,50.8,12.7],"min":[-25.4,0,-2.54]},)"
               uR"("estimatedSeconds":31.9,"feed":{"max":254,"min":254},"lines":5,"motions":3,)"
               uR"("partial":false,"rapid":{"max":[0,0,12.7],"min":[0,0,12.7]},)"
               uR"("spindle":{"max":8000,"min":8000},"tools":[3],"units":"inch","warnings":[]})"
               u"\n"_s);
        cliRow(
            "inspect empty",
            u"inspect "_s + writeFile(dir, u"empty.gcode"_s, {}).toLocalFile() + u" --json"_s, 0,
            uR"({"cutting":null,"estimatedSeconds":0,"feed":null,"lines":0,"motions":0,)"
            uR"("partial":false,"rapid":null,"spindle":null,"tools":[],"units":null,"warnings":[]})"
            u"\n"_s);
        cliRow("inspect unusable",
               u"inspect "_s + writeFile(dir, u"notes.txt"_s, "G0 X1\n").toLocalFile(), 2, {},
               JobFileError::unsupportedExtension(u"txt"_s).description() + u'\n');
        cliRow("inspect no file", u"inspect"_s, 2, {},
               u"Usage: tarnwick-cli inspect FILE [--json]\n"_s);
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

    // The feed server answers from this process, so the tool runs while the event loop turns.
    void checkUpdatePrintsTheOutcomeAndKeepsTheIdentifier() {
        FeedServer server;
        const Cli cli;
        const auto run = [&](int status, const QByteArray& body) {
            server.respond(status, body);
            return cli.run({u"check-update"_s, u"--feed-url"_s, server.url.toString()}).all();
        };
        QCOMPARE(run(200, build::version), QStringList({u"0"_s, u"Up to Date\n"_s, QString()}));
        QCOMPARE(run(200, "{\"version\":\"999.0\",\"url\":\"https://x.example/999\"}"),
                 QStringList({u"0"_s, u"Update Available: 999.0 https://x.example/999\n"_s, {}}));
        QCOMPARE(run(404, {}),
                 QStringList({u"1"_s, QString(),
                              u"Update Check Failed: The update feed at "_s +
                                  server.url.toString() + u" could not be read.\n"_s}));
        const QString id = server.targets.value(0).section(u'=', 1).left(36);
        QCOMPARE(server.targets, QStringList(3, u"/quorle/version.json?uuid="_s + id + u"&v="_s +
                                                    QLatin1String(build::version)));
    }
};

QTEST_GUILESS_MAIN(CommandsTest)
#include "CommandsTest.moc"
