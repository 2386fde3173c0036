#include "BuildConfig.h"
#include "update/FeedServer.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class CheckUpdateCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void printsTheOutcomeAndKeepsTheIdentifier() {
        QTemporaryDir config;
        qputenv("TARNWICK_SETTINGS_FILE", config.filePath(u"settings.ini"_s).toUtf8());
        FeedServer server;
        // The feed server answers from this process, so the tool runs while the event loop turns.
        const auto run = [&](int status, const QByteArray& body) {
            server.respond(status, body);
            QProcess process;
            process.start(qEnvironmentVariable("TARNWICK_BIN_DIR") + u"/tarnwick-cli"_s,
                          {u"check-update"_s, u"--feed-url"_s, server.url.toString()});
            const bool ended = QTest::qWaitFor(
                [&process] { return process.state() == QProcess::NotRunning; }, 15'000);
            return QStringList{QString::number(ended ? process.exitCode() : -1),
                               QString::fromUtf8(process.readAllStandardOutput()),
                               QString::fromUtf8(process.readAllStandardError())};
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

QTEST_GUILESS_MAIN(CheckUpdateCommandTest)
#include "CheckUpdateCommandTest.moc"
