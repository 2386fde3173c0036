#include "CliRun.h"
#include "discovery/Announcer.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"

#include <QTcpServer>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray content(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = "G0 X1 Y2\n"[i % 9];
    return bytes;
}

QString at(quint16 port) {
    return u"127.0.0.1:%1"_s.arg(port);
}

// Sends the signal once every simulator has received a chunk.
std::function<void(QProcess&)> signalWhenSending(const QList<SimProcess*>& sims, int signal) {
    return [sims, signal](QProcess& cli) {
#ifdef Q_OS_UNIX
        if (std::all_of(sims.begin(), sims.end(),
                        [](SimProcess* sim) { return sim->loggedTypes().contains(u"fileData"_s); }))
            ::kill(pid_t(cli.processId()), signal);
#else
        Q_UNUSED(cli);
        Q_UNUSED(signal);
#endif
    };
}

} // namespace

class UploadCommandTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    const QByteArray bytes = content(50'000);
    const QString part = writeFile(dir, u"my part.nc"_s, bytes).toLocalFile();
    const QString second = writeFile(dir, u"second.nc"_s, content(20'000)).toLocalFile();

private Q_SLOTS:
    void helpDocumentsEveryExitCode() {
        const CliResult help = Cli().run({u"upload"_s, u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        for (int code = 0; code <= 8; ++code)
            QVERIFY2(help.out.contains(u"\n  %1  "_s.arg(code)), qPrintable(help.out));
    }

    // Each class once: its exit code, its text on stderr and its last JSON line. "%1" is the
    // simulator's port; the second run of a row is the one compared.
    void classes_data() {
        QTest::addColumn<QStringList>("sim");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("runs");
        QTest::addColumn<int>("signal");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("kind");
        const QStringList good{u"--ftype"_s, u"x"_s};
        const QStringList slow = good + QStringList{u"--latency-ms"_s, u"300"_s};
        const QStringList toSim{part, u"--to"_s, u"%1"_s};
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString refused = at(closed.serverPort());
        closed.close();
        const auto row = [](const char* name, QStringList sim, const QStringList& arguments,
                            int runs, int signal, int code, const QString& message,
                            const char* kind) {
            QTest::newRow(name) << sim << arguments << runs << signal << code << message
                                << QString::fromLatin1(kind);
        };
        row("uploaded", good, toSim, 1, 0, 0, {}, "");
        row("unusable file", good,
            {writeFile(dir, u"notes.TXT"_s, "x").toLocalFile(), u"--to"_s, u"%1"_s}, 1, 0, 2,
            u"The .txt extension is not supported. Choose an .nc, .cnc or .gcode file."_s, "usage");
        row("invalid address", good, {part, u"--to"_s, u"127.0.0.1:0"_s}, 1, 0, 2,
            u"Enter a valid IPv4 address and port."_s, "usage");
        row("unreachable", {}, {part, u"--to"_s, refused}, 1, 0, 3, {}, "unreachable");
        row("refused", good + QStringList{u"--cancel-after"_s, u"1"_s}, toSim, 1, 0, 4,
            u"The machine rejected the upload: The machine cancelled the transfer."_s, "refused");
        row("timed out", good + QStringList{u"--silent-after"_s, u"1"_s}, toSim, 1, 0, 5,
            u"The machine did not respond before the upload timed out."_s, "timeout");
#ifdef Q_OS_UNIX
        row("SIGINT", slow, toSim, 1, SIGINT, 6, u"The upload was cancelled."_s, "cancelled");
        row("SIGHUP", slow, toSim, 1, SIGHUP, 6, u"The upload was cancelled."_s, "cancelled");
#endif
        row("duplicate", good, toSim, 2, 0, 7,
            u"This exact file was uploaded to this machine in the last 24 hours. Run the command "
            "again with --again to send it anyway."_s,
            "duplicate");
    }
    void classes() {
        QFETCH(QStringList, sim);
        QFETCH(QStringList, arguments);
        QFETCH(int, runs);
        QFETCH(int, signal);
        QFETCH(int, code);
        QFETCH(QString, message);
        QFETCH(QString, kind);
        SimProcess machine(sim);
        const quint16 port = sim.isEmpty() ? 0 : machine.waitUntilListening();
        const Cli cli;
        QStringList command{u"upload"_s, u"--json"_s};
        for (const QString& argument : arguments)
            command.append(argument == u"%1"_s ? at(port) : argument);
        CliResult result;
        for (int run = 0; run < runs; ++run)
            result = cli.run(command, signal ? signalWhenSending({&machine}, signal)
                                             : std::function<void(QProcess&)>());
        QCOMPARE(result.exitCode, code);
        const QJsonObject last = result.jsonLines().value(result.jsonLines().size() - 1);
        if (code == 0) {
            QCOMPARE(last.value(u"phase"_s).toString(), u"completed"_s);
            QCOMPARE(machine.stored(u"my part.nc"_s), bytes);
            return;
        }
        if (!message.isEmpty())
            QCOMPARE(result.err, message + u'\n');
        QCOMPARE(last.value(u"kind"_s).toString(), kind);
        QCOMPARE(last.value(u"error"_s).toString(), result.err.trimmed());
        if (signal)
            QTRY_COMPARE_WITH_TIMEOUT(machine.loggedTypes().last(), u"fileCancel"_s, 3000);
    }
};

QTEST_GUILESS_MAIN(UploadCommandTest)
#include "UploadCommandTest.moc"
