#include "CliRun.h"
#include "update/FeedServer.h"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class CheckUpdateCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The feed server answers from this process, so the tool runs while the event loop turns.
    void printsTheOutcomeAndKeepsTheIdentifier() {
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

QTEST_GUILESS_MAIN(CheckUpdateCommandTest)
#include "CheckUpdateCommandTest.moc"
