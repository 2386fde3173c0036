#include "BuildConfig.h"
#include "update/FeedServer.h"

#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace tarnwick::testing;

namespace {

constexpr int runTimeoutMilliseconds = 15'000;

struct Run {
    int exitCode = -1;
    QString standardOutput;
    QString standardError;
};

QString cliPath() {
    return qEnvironmentVariable("TARNWICK_BIN_DIR") + QStringLiteral("/tarnwick-cli");
}

QString queryItem(const QString& target, const QString& name) {
    return QUrlQuery(QUrl(target).query()).queryItemValue(name, QUrl::FullyDecoded);
}

} // namespace

class CheckUpdateCommandTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_config;

    // The feed server lives in this process, so the tool runs while the event loop turns.
    Run run(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_config->path());
        process.setProcessEnvironment(environment);
        process.start(cliPath(), QStringList{QStringLiteral("check-update")} + arguments);
        const bool ended = QTest::qWaitFor(
            [&process] { return process.state() == QProcess::NotRunning; }, runTimeoutMilliseconds);
        if (!ended) {
            process.kill();
            process.waitForFinished();
            return {};
        }
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QVariant storedIdentifier() {
        const QSettings store(m_config->filePath(QLatin1String(tarnwick::build::organizationName) +
                                                 u'/' +
                                                 QLatin1String(tarnwick::build::applicationName) +
                                                 QStringLiteral(".conf")),
                              QSettings::IniFormat);
        return store.value(QStringLiteral("installIdentifier"));
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(QFileInfo(cliPath()).isExecutable(),
                 "TARNWICK_BIN_DIR must name the folder that holds tarnwick-cli");
    }

    void init() {
        m_config = std::make_unique<QTemporaryDir>();
        QVERIFY(m_config->isValid());
    }

    void reportsUpToDate() {
        FeedServer server;
        server.respond(200, QByteArray(tarnwick::build::version) + '\n');

        const Run result = run({QStringLiteral("--feed-url"), server.url().toString()});
        QCOMPARE(result.standardOutput, QStringLiteral("Up to Date\n"));
        QCOMPARE(result.standardError, QString());
        QCOMPARE(result.exitCode, 0);
    }

    void reportsANewerVersion() {
        FeedServer server;
        server.respond(200,
                       "{\"version\":\"999.0\",\"url\":\"https://downloads.example.com/999\"}");
        Run result = run({QStringLiteral("--feed-url"), server.url().toString()});
        QCOMPARE(result.standardOutput,
                 QStringLiteral("Update Available: 999.0 https://downloads.example.com/999\n"));
        QCOMPARE(result.exitCode, 0);

        server.respond(200, "999.1");
        result = run({QStringLiteral("--feed-url"), server.url().toString()});
        QCOMPARE(result.standardOutput, QStringLiteral("Update Available: 999.1 https://") +
                                            QLatin1String(tarnwick::build::updateHost) +
                                            QStringLiteral("/quorle/\n"));
        QCOMPARE(result.exitCode, 0);
    }

    void reportsFailuresOnStandardError() {
        FeedServer server;
        server.respond(404, "Not here");
        Run result = run({QStringLiteral("--feed-url"), server.url().toString()});
        QCOMPARE(result.standardOutput, QString());
        QCOMPARE(result.standardError, QStringLiteral("Update Check Failed: The update feed at ") +
                                           server.url().toString() +
                                           QStringLiteral(" could not be read.\n"));
        QCOMPARE(result.exitCode, 1);

        QTcpServer placeholder;
        QVERIFY(placeholder.listen(QHostAddress::LocalHost, 0));
        const quint16 closedPort = placeholder.serverPort();
        placeholder.close();
        result = run({QStringLiteral("--feed-url"),
                      QStringLiteral("http://127.0.0.1:%1/quorle/version.json").arg(closedPort)});
        QCOMPARE(result.standardError, QStringLiteral("Update Check Failed: Connection refused\n"));
        QCOMPARE(result.exitCode, 1);
    }

    void keepsTheInstallIdentifierAcrossRuns() {
        FeedServer server;
        server.respond(200, "0.1");
        QCOMPARE(run({QStringLiteral("--feed-url"), server.url().toString()}).exitCode, 0);
        QCOMPARE(run({QStringLiteral("--feed-url"), server.url().toString()}).exitCode, 0);

        QCOMPARE(server.requestTargets().size(), 2);
        const QString identifier = queryItem(server.requestTargets()[0], QStringLiteral("uuid"));
        QCOMPARE(identifier.size(), 36);
        QCOMPARE(identifier, identifier.toUpper());
        QCOMPARE(queryItem(server.requestTargets()[1], QStringLiteral("uuid")), identifier);
        QCOMPARE(queryItem(server.requestTargets()[0], QStringLiteral("v")),
                 QLatin1String(tarnwick::build::version));
        QCOMPARE(storedIdentifier(), QVariant(identifier));
    }

    void refusesBadUsage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");

        QTest::newRow("other scheme")
            << QStringList{QStringLiteral("--feed-url"), QStringLiteral("ftp://127.0.0.1/v")}
            << QStringLiteral(
                   "tarnwick-cli check-update: 'ftp://127.0.0.1/v' is not an http or https URL\n");
        QTest::newRow("relative")
            << QStringList{QStringLiteral("--feed-url"), QStringLiteral("/quorle/version.json")}
            << QStringLiteral("tarnwick-cli check-update: '/quorle/version.json' is not an http "
                              "or https URL\n");
        QTest::newRow("missing value")
            << QStringList{QStringLiteral("--feed-url")}
            << QStringLiteral("tarnwick-cli check-update: Missing value after '--feed-url'.\n");
        QTest::newRow("unknown option")
            << QStringList{QStringLiteral("--quiet")}
            << QStringLiteral("tarnwick-cli check-update: Unknown option 'quiet'.\n");
        QTest::newRow("extra argument")
            << QStringList{QStringLiteral("now")}
            << QStringLiteral("tarnwick-cli check-update: unexpected argument 'now'\n");
    }

    void refusesBadUsage() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);

        const Run result = run(arguments);
        QCOMPARE(result.standardError, message);
        QCOMPARE(result.standardOutput, QString());
        QCOMPARE(result.exitCode, 2);
        QVERIFY(!storedIdentifier().isValid());
    }

    void explainsItsOptions() {
        const Run result = run({QStringLiteral("--help")});
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.standardOutput.startsWith(
                     QStringLiteral("Usage: tarnwick-cli check-update [--feed-url URL]\n")),
                 qPrintable(result.standardOutput));
        QVERIFY(result.standardOutput.contains(QStringLiteral("--feed-url <URL>")));
        QVERIFY(!storedIdentifier().isValid());
    }
};

QTEST_GUILESS_MAIN(CheckUpdateCommandTest)
#include "CheckUpdateCommandTest.moc"
