#include "update/UpdateChecker.h"

#include "support/TestFiles.h"
#include "update/FeedServer.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>

using namespace tarnwick;
using namespace tarnwick::testing;

Q_DECLARE_METATYPE(std::optional<QString>)

namespace {

constexpr int checkTimeoutMilliseconds = 10'000;

// What the user would read in the alert, or "nothing" while no outcome is shown.
QString describe(const std::optional<UpdateChecker::Outcome>& outcome) {
    if (!outcome)
        return QStringLiteral("nothing");
    if (const auto* available = std::get_if<UpdateChecker::UpdateAvailable>(&outcome->kind))
        return QStringLiteral("Update Available: ") + available->version.description() + u' ' +
               available->url.toString();
    if (const auto* failed = std::get_if<UpdateChecker::Failed>(&outcome->kind))
        return QStringLiteral("Update Check Failed: ") + failed->message;
    return QStringLiteral("Up to Date");
}

bool runsToTheEnd(UpdateChecker& checker, bool reportEveryOutcome) {
    checker.check(reportEveryOutcome);
    return QTest::qWaitFor([&checker] { return !checker.isChecking(); }, checkTimeoutMilliseconds);
}

QString queryItem(const QString& target, const QString& name) {
    return QUrlQuery(QUrl(target).query()).queryItemValue(name, QUrl::FullyDecoded);
}

// A port on 127.0.0.1 on which nothing listens.
quint16 closedPort() {
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        qFatal("cannot find a free port");
    return server.serverPort();
}

} // namespace

class UpdateCheckerTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QNetworkAccessManager m_network;

    std::unique_ptr<UpdateChecker> checker(const std::optional<QString>& running, const QUrl& feed,
                                           QNetworkAccessManager* network = nullptr) {
        return std::make_unique<UpdateChecker>(temporaryStore(m_dir), running,
                                               network ? network : &m_network, feed);
    }

    QVariant stored(const QString& key) { return temporaryStore(m_dir)->value(key); }
    void store(const QString& key, const QVariant& value) {
        temporaryStore(m_dir)->setValue(key, value);
    }

private Q_SLOTS:
    void init() { temporaryStore(m_dir)->clear(); }

    void requestCarriesANewIdentifierAndTheRunningVersion() {
        FeedServer server;
        server.respond(200, "1.3");
        auto updateChecker = checker(QStringLiteral(" 01.3\n"), server.url());

        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(server.requestTargets().size(), 1);
        const QString identifier = queryItem(server.requestTargets()[0], QStringLiteral("uuid"));
        QVERIFY2(QRegularExpression(QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-"
                                                   "[89AB][0-9A-F]{3}-[0-9A-F]{12}$"))
                     .match(identifier)
                     .hasMatch(),
                 qPrintable(identifier));
        QCOMPARE(server.requestTargets()[0], QStringLiteral("/quorle/version.json?uuid=") +
                                                 identifier + QStringLiteral("&v=1.3"));
        QCOMPARE(stored(QStringLiteral("installIdentifier")), QVariant(identifier));

        QVERIFY(runsToTheEnd(*updateChecker, false));
        auto laterChecker = checker(QStringLiteral("1.3"), server.url());
        QVERIFY(runsToTheEnd(*laterChecker, false));
        QCOMPARE(server.requestTargets().size(), 3);
        QCOMPARE(server.requestTargets()[1], server.requestTargets()[0]);
        QCOMPARE(server.requestTargets()[2], server.requestTargets()[0]);
        QCOMPARE(laterChecker->installID(), identifier);
    }

    void aStoredIdentifierIsSentAsItIs() {
        store(QStringLiteral("installIdentifier"), QStringLiteral("my install&v=9"));
        FeedServer server;
        server.respond(200, "1.0");
        auto updateChecker = checker(QStringLiteral("1.0"), server.url());

        QCOMPARE(updateChecker->installID(), QStringLiteral("my install&v=9"));
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(
            server.requestTargets(),
            QStringList{QStringLiteral("/quorle/version.json?uuid=my%20install%26v%3D9&v=1.0")});
        QCOMPARE(stored(QStringLiteral("installIdentifier")),
                 QVariant(QStringLiteral("my install&v=9")));
    }

    void feedURLPutsTheIdentifierFirst() {
        const QUrl feed(QStringLiteral("https://updates.example.com/quorle/version.json"));
        const QString id = QStringLiteral("0E4F5A8C-1B2D-4C3E-9F00-112233445566");
        QCOMPARE(UpdateChecker::feedURL(feed, id, AppVersion::fromText(u"1.3")).toString(),
                 QStringLiteral("https://updates.example.com/quorle/version.json"
                                "?uuid=0E4F5A8C-1B2D-4C3E-9F00-112233445566&v=1.3"));
        QCOMPARE(UpdateChecker::feedURL(feed, id, std::nullopt).toString(),
                 QStringLiteral("https://updates.example.com/quorle/version.json"
                                "?uuid=0E4F5A8C-1B2D-4C3E-9F00-112233445566"));
    }

    void reportsEachOutcome_data() {
        QTest::addColumn<std::optional<QString>>("running");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("reportEveryOutcome");
        QTest::addColumn<QString>("expected");

        const std::optional<QString> v13 = QStringLiteral("1.3");
        const QByteArray newer =
            "{\"version\":\"2.0\",\"url\":\"https://downloads.example.com/2.0\"}";
        const QString available =
            QStringLiteral("Update Available: 2.0 https://downloads.example.com/2.0");
        const QString unreadable =
            QStringLiteral("Update Check Failed: The update feed at FEED could not be read.");
        const QString nothing = QStringLiteral("nothing");
        const QString upToDate = QStringLiteral("Up to Date");

        QTest::newRow("manual, newer") << v13 << 200 << newer << true << available;
        QTest::newRow("automatic, newer") << v13 << 200 << newer << false << available;
        QTest::newRow("manual, newer as text") << v13 << 200 << QByteArray("1.3.1\n") << true
                                               << QStringLiteral("Update Available: 1.3.1 ") +
                                                      UpdateFeed::fallbackDownloadURL().toString();
        QTest::newRow("manual, equal") << v13 << 200 << QByteArray("1.3.0") << true << upToDate;
        QTest::newRow("automatic, equal") << v13 << 200 << QByteArray("1.3.0") << false << nothing;
        QTest::newRow("manual, older") << v13 << 200 << QByteArray("1.2.9") << true << upToDate;
        QTest::newRow("automatic, older") << v13 << 200 << QByteArray("1.2.9") << false << nothing;
        QTest::newRow("manual, 304") << v13 << 304 << QByteArray() << true << unreadable;
        QTest::newRow("automatic, 304") << v13 << 304 << QByteArray() << false << nothing;
        QTest::newRow("manual, 404") << v13 << 404 << QByteArray("2.0") << true << unreadable;
        QTest::newRow("automatic, 404") << v13 << 404 << QByteArray("2.0") << false << nothing;
        QTest::newRow("manual, 500") << v13 << 500 << QByteArray("2.0") << true << unreadable;
        QTest::newRow("manual, 201 with a newer feed")
            << v13 << 201 << QByteArray("2.0") << true << unreadable;
        QTest::newRow("manual, unreadable body")
            << v13 << 200 << QByteArray("<html>moved</html>") << true << unreadable;
        QTest::newRow("automatic, unreadable body")
            << v13 << 200 << QByteArray("<html>moved</html>") << false << nothing;
        QTest::newRow("manual, json beta")
            << v13 << 200 << QByteArray("{\"version\":\"beta\"}") << true << unreadable;
        QTest::newRow("manual, oversized body")
            << v13 << 200 << QByteArray(UpdateChecker::maximumFeedSize + 1, ' ') + "2.0" << true
            << unreadable;
        QTest::newRow("manual, empty body") << v13 << 200 << QByteArray() << true << unreadable;
        QTest::newRow("manual, unknown running version")
            << std::optional<QString>() << 200 << newer << true << upToDate;
        QTest::newRow("automatic, unknown running version")
            << std::optional<QString>() << 200 << newer << false << nothing;
        QTest::newRow("manual, running text is no version")
            << std::optional<QString>(QStringLiteral("dev")) << 200 << newer << true << upToDate;
    }

    void reportsEachOutcome() {
        QFETCH(std::optional<QString>, running);
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(bool, reportEveryOutcome);
        QFETCH(QString, expected);

        FeedServer server;
        server.respond(status, body);
        auto updateChecker = checker(running, server.url());
        QSignalSpy outcomes(updateChecker.get(), &UpdateChecker::outcomeChanged);
        QSignalSpy checking(updateChecker.get(), &UpdateChecker::isCheckingChanged);

        updateChecker->check(reportEveryOutcome);
        QVERIFY(updateChecker->isChecking());
        QCOMPARE(outcomes.size(), 0);
        QVERIFY(QTest::qWaitFor([&] { return !updateChecker->isChecking(); },
                                checkTimeoutMilliseconds));

        QCOMPARE(describe(updateChecker->outcome()),
                 QString(expected).replace(QStringLiteral("FEED"), server.url().toString()));
        QCOMPARE(outcomes.size(), expected == QLatin1String("nothing") ? 0 : 1);
        QCOMPARE(checking.size(), 2);
        QCOMPARE(checking[0][0].toBool(), true);
        QCOMPARE(checking[1][0].toBool(), false);

        QCOMPARE(server.requestTargets().size(), 1);
        const bool sendsVersion = running && AppVersion::fromText(*running);
        QCOMPARE(
            QUrlQuery(QUrl(server.requestTargets()[0]).query()).hasQueryItem(QStringLiteral("v")),
            sendsVersion);
    }

    void aRefusedConnectionFailsOnlyAManualCheck() {
        const QUrl feed(
            QStringLiteral("http://127.0.0.1:%1/quorle/version.json").arg(closedPort()));
        auto updateChecker = checker(QStringLiteral("1.3"), feed);

        QVERIFY(runsToTheEnd(*updateChecker, false));
        QCOMPARE(describe(updateChecker->outcome()), QStringLiteral("nothing"));

        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(describe(updateChecker->outcome()),
                 QStringLiteral("Update Check Failed: Connection refused"));
    }

    void aBodyCutShortIsATransportFailure() {
        FeedServer server;
        server.respond({200, "2.0", {}, 100});
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());

        QVERIFY(runsToTheEnd(*updateChecker, false));
        QCOMPARE(describe(updateChecker->outcome()), QStringLiteral("nothing"));
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(describe(updateChecker->outcome()),
                 QStringLiteral("Update Check Failed: Connection closed"));
    }

    void aSilentCheckLeavesTheShownOutcome() {
        FeedServer server;
        server.respond(404, "");
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());
        QVERIFY(runsToTheEnd(*updateChecker, true));
        const std::optional<UpdateChecker::Outcome> shown = updateChecker->outcome();
        QVERIFY(shown);

        server.respond(200, "1.3");
        QVERIFY(runsToTheEnd(*updateChecker, false));
        QCOMPARE(updateChecker->outcome()->id, shown->id);
        QCOMPARE(updateChecker->outcome()->kind, shown->kind);

        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(describe(updateChecker->outcome()), QStringLiteral("Up to Date"));
    }

    void everyOutcomeHasItsOwnId() {
        FeedServer server;
        server.respond(200, "1.3");
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());
        QSignalSpy outcomes(updateChecker.get(), &UpdateChecker::outcomeChanged);

        QVERIFY(runsToTheEnd(*updateChecker, true));
        const QUuid first = updateChecker->outcome()->id;
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(outcomes.size(), 2);
        QCOMPARE(updateChecker->outcome()->kind, UpdateChecker::Kind(UpdateChecker::UpToDate{}));
        QVERIFY(!first.isNull());
        QVERIFY(updateChecker->outcome()->id != first);
    }

    void clearingDismissesTheOutcome() {
        FeedServer server;
        server.respond(200, "1.3");
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QSignalSpy outcomes(updateChecker.get(), &UpdateChecker::outcomeChanged);

        updateChecker->clearOutcome();
        QVERIFY(!updateChecker->outcome());
        QCOMPARE(outcomes.size(), 1);
        updateChecker->clearOutcome();
        QCOMPARE(outcomes.size(), 1);
    }

    void aSecondCheckWhileOneRunsStartsNoRequest() {
        FeedServer server;
        server.respond(200, "2.0");
        server.hold();
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());
        QSignalSpy outcomes(updateChecker.get(), &UpdateChecker::outcomeChanged);
        QSignalSpy checking(updateChecker.get(), &UpdateChecker::isCheckingChanged);

        updateChecker->check(false);
        updateChecker->check(true);
        QTRY_COMPARE(server.requestTargets().size(), 1);
        QTest::qWait(200);
        QCOMPARE(server.requestTargets().size(), 1);
        QVERIFY(updateChecker->isChecking());

        server.release();
        QTRY_VERIFY(!updateChecker->isChecking());
        QCOMPARE(server.requestTargets().size(), 1);
        QCOMPARE(checking.size(), 2);
        QCOMPARE(outcomes.size(), 1);
        QCOMPARE(describe(updateChecker->outcome()),
                 QStringLiteral("Update Available: 2.0 ") +
                     UpdateFeed::fallbackDownloadURL().toString());

        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(server.requestTargets().size(), 2);
    }

    void neverAnswersFromACache() {
        QNetworkAccessManager cachingNetwork;
        auto* cache = new QNetworkDiskCache(&cachingNetwork);
        cache->setCacheDirectory(m_dir.filePath(QStringLiteral("http-cache")));
        cachingNetwork.setCache(cache);
        FeedServer server;
        server.respond({200, "1.3", {"Cache-Control: public, max-age=3600"}, std::nullopt});
        auto updateChecker = checker(QStringLiteral("1.3"), server.url(), &cachingNetwork);

        QVERIFY(runsToTheEnd(*updateChecker, true));
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(server.requestTargets().size(), 2);
        QCOMPARE(describe(updateChecker->outcome()), QStringLiteral("Up to Date"));
    }

    void deletingTheCheckerEndsItsRequest() {
        FeedServer server;
        server.respond(200, "2.0");
        server.hold();
        auto updateChecker = checker(QStringLiteral("1.3"), server.url());
        updateChecker->check(true);
        QTRY_COMPARE(server.requestTargets().size(), 1);

        updateChecker.reset();
        server.release();
        QTRY_VERIFY(m_network.findChildren<QNetworkReply*>().isEmpty());
    }

    void automaticChecksFollowOnlyAStoredBoolean_data() {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("absent") << QVariant() << true;
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("text false") << QVariant(QStringLiteral("false")) << false;
        QTest::newRow("other text") << QVariant(QStringLiteral("no")) << true;
        QTest::newRow("capitalised") << QVariant(QStringLiteral("False")) << true;
        QTest::newRow("zero") << QVariant(0) << true;
        QTest::newRow("list") << QVariant(QStringList{QStringLiteral("false")}) << true;
    }

    void automaticChecksFollowOnlyAStoredBoolean() {
        QFETCH(QVariant, value);
        QFETCH(bool, enabled);
        if (value.isValid())
            store(QStringLiteral("automaticUpdateChecks"), value);

        const auto updateChecker = checker(QStringLiteral("1.3"), UpdateFeed::feedURL());
        QCOMPARE(updateChecker->automaticChecksEnabled(), enabled);
    }
};

QTEST_GUILESS_MAIN(UpdateCheckerTest)
#include "UpdateCheckerTest.moc"
