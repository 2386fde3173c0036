#include "update/UpdateChecker.h"

#include "BuildConfig.h"
#include "support/TestFiles.h"
#include "update/AppVersion.h"
#include "update/FeedServer.h"
#include "update/UpdateFeed.h"

#include <QNetworkDiskCache>
#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;
using namespace tarnwick::testing;

namespace {

// What the user would read, or "nothing" while no outcome is shown.
QString describe(const std::optional<UpdateChecker::Outcome>& outcome) {
    if (!outcome)
        return u"nothing"_s;
    if (const auto* available = std::get_if<UpdateChecker::UpdateAvailable>(&outcome->kind))
        return available->version.description() + u' ' + available->url.toString();
    if (const auto* failed = std::get_if<UpdateChecker::Failed>(&outcome->kind))
        return failed->message;
    return u"Up to Date"_s;
}

// A check never ends within the call that starts it.
bool runsToTheEnd(UpdateChecker& checker, bool reportEveryOutcome) {
    checker.check(reportEveryOutcome);
    return checker.isChecking() &&
           QTest::qWaitFor([&checker] { return !checker.isChecking(); }, 10'000);
}

} // namespace

// The feed's bodies, the versions it names, and the checker that asks for them.
class UpdateCheckerTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QNetworkAccessManager m_network;

    // A null `running` text means the running version is unknown.
    std::unique_ptr<UpdateChecker> checker(const QString& running, const QUrl& feed) {
        return std::make_unique<UpdateChecker>(
            temporaryStore(m_dir), running.isNull() ? std::nullopt : std::optional(running),
            &m_network, feed);
    }

private Q_SLOTS:
    void init() { temporaryStore(m_dir)->clear(); }

    // The expectation is the version read, followed by the download page unless that is the
    // fallback one; empty when the body gives no feed.
    void readsFeedBodies_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("expected");
        QTest::newRow("json, url") << "{\"version\":\"2.1\",\"url\":\"https://x.example/2\"}"_ba
                                   << u"2.1 https://x.example/2"_s;
        QTest::newRow("json, no url") << "{\"version\":\"2.1\"}"_ba << u"2.1"_s;
        QTest::newRow("json, empty url") << "{\"version\":\"2.1\",\"url\":\"\"}"_ba << u"2.1"_s;
        QTest::newRow("json, other keys") << "{\"n\":[1],\"version\":\" 3.0\\n\"}"_ba << u"3.0"_s;
        QTest::newRow("text") << "2.1\n"_ba << u"2.1"_s;
        QTest::newRow("blanks, zero") << "\xC2\xA0\t01.2 \r\n"_ba << u"1.2"_s;
        QTest::newRow("double dot") << "1..2"_ba << u"1.2"_s;
        QTest::newRow("trailing dot") << "3."_ba << u"3"_s;
        QTest::newRow("signs") << "+1.-2"_ba << u"1.-2"_s;
        QTest::newRow("json beta") << "{\"version\":\"beta\"}"_ba << QString();
        QTest::newRow("url, no version") << "{\"url\":\"https://x.example/\"}"_ba << QString();
        QTest::newRow("version number") << "{\"version\":2.1}"_ba << QString();
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("lone dot") << "."_ba << QString();
        QTest::newRow("suffix") << "1.2-beta"_ba << QString();
        QTest::newRow("letter first") << "v1.2"_ba << QString();
        QTest::newRow("letter last") << "1b"_ba << QString();
        QTest::newRow("inner blank") << "1. 2"_ba << QString();
        QTest::newRow("out of range") << "9223372036854775808"_ba << QString();
    }

    void readsFeedBodies() {
        QFETCH(QByteArray, body);
        QFETCH(QString, expected);
        const std::optional<UpdateFeed> feed = UpdateFeed::fromData(body);
        const QString fallback = u"https://"_s + QLatin1String(build::updateHost) + u"/quorle/"_s;
        QCOMPARE(UpdateFeed::fallbackDownloadURL().toString(), fallback);
        QCOMPARE(UpdateFeed::feedURL().toString(), fallback + u"version.json"_s);
        const QString page = feed ? feed->downloadURL.toString() : fallback;
        QCOMPARE(feed ? feed->version.description() + (page == fallback ? QString() : u' ' + page)
                      : QString(),
                 expected);
    }

    // Each pair as "<", "=" or ">", written only when the other operators agree.
    void ordersComponentByComponent() {
        QString relations;
        for (const QString& pair :
             {u"1.2 1.2.0.0"_s, u"1.9 1.10"_s, u"2 1.99.99"_s, u"1.2 1.2.1"_s, u"1.2.-1 1.2"_s}) {
            const AppVersion a = AppVersion::fromText(pair.section(u' ', 0, 0)).value();
            const AppVersion b = AppVersion::fromText(pair.section(u' ', 1)).value();
            const bool consistent = (a == b) == (a <= b && a >= b) && (a < b) == (b > a);
            relations += !consistent ? u'?' : a < b ? u'<' : a == b ? u'=' : u'>';
        }
        QCOMPARE(relations, u"=<><<"_s);
    }

    // Every check asks the feed with the one stored identifier, though its answer is cacheable.
    void theStoreKeepsTheIdentifier() {
        QNetworkAccessManager cachingNetwork;
        auto* cache = new QNetworkDiskCache(&cachingNetwork);
        cache->setCacheDirectory(m_dir.filePath(u"cache"_s));
        cachingNetwork.setCache(cache);
        FeedServer server;
        server.respond(200, "1.3");
        UpdateChecker first(temporaryStore(m_dir), u" 01.3\n"_s, &cachingNetwork, server.url);
        UpdateChecker second(temporaryStore(m_dir), u"1.3"_s, &cachingNetwork, server.url);
        QVERIFY(runsToTheEnd(first, true) && runsToTheEnd(second, true));
        const QString id = temporaryStore(m_dir)->value(u"installIdentifier"_s).toString();
        QCOMPARE(QUuid(id).version(), QUuid::Random);
        QCOMPARE(QUuid(id).toString(QUuid::WithoutBraces).toUpper(), id);
        QCOMPARE(server.targets, QStringList(2, u"/quorle/version.json?uuid=" + id + u"&v=1.3"));
    }

    // Each row runs an automatic check, a manual one and another automatic one; an automatic
    // check shows only a newer version and otherwise leaves the shown outcome alone.
    void reportsEachOutcome_data() {
        QTest::addColumn<QString>("running");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("missing");
        QTest::addColumn<QString>("manual");
        const QString v = u"1.3"_s;
        const QByteArray newer("{\"version\":\"2.0\",\"url\":\"https://x.example/2\"}");
        const QString bad = u"The update feed at FEED could not be read."_s;
        const QString same = u"Up to Date"_s;
        QTest::newRow("newer") << v << 200 << newer << 0 << u"2.0 https://x.example/2"_s;
        QTest::newRow("same") << v << 200 << "1.3.0"_ba << 0 << same;
        QTest::newRow("older") << v << 200 << "1.2.9"_ba << 0 << same;
        QTest::newRow("304") << v << 304 << QByteArray() << 0 << bad;
        QTest::newRow("201") << v << 201 << "2.0"_ba << 0 << bad;
        QTest::newRow("html") << v << 200 << "<html/>"_ba << 0 << bad;
        QTest::newRow("cut short") << v << 200 << "2.0"_ba << 9 << u"Connection closed"_s;
        QTest::newRow("bad gzip") << v << 200 << "\x1f\x8b\x08junk"_ba << -1
                                  << u"Decompression failed: the compressed answer is damaged or "
                                     u"cut short."_s;
        QTest::newRow("refused") << v << 0 << QByteArray() << 0 << u"Connection refused"_s;
        QTest::newRow("no version") << QString() << 200 << newer << 0 << same;
        QTest::newRow("no valid version") << u"dev"_s << 200 << newer << 0 << same;
    }

    void reportsEachOutcome() {
        QFETCH(QString, running);
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(int, missing);
        QFETCH(QString, manual);
        FeedServer server;
        manual.replace(u"FEED"_s, server.url.toString());
        server.respond(status, body, std::max(missing, 0),
                       missing < 0 ? "Content-Encoding: gzip\r\n" : QByteArray());
        auto updateChecker = checker(running, server.url);
        QSignalSpy outcomes(updateChecker.get(), &UpdateChecker::outcomeChanged);
        const bool newer = manual.startsWith(u"2.0");

        updateChecker->check(false);
        QVERIFY(runsToTheEnd(*updateChecker, true)); // dropped: one check runs at a time
        QCOMPARE(describe(updateChecker->outcome()), newer ? manual : u"nothing"_s);
        QVERIFY(runsToTheEnd(*updateChecker, true));
        const UpdateChecker::Outcome shown = updateChecker->outcome().value();
        QCOMPARE(describe(shown), manual);
        QVERIFY(runsToTheEnd(*updateChecker, false));
        QCOMPARE(describe(updateChecker->outcome()), manual);
        QCOMPARE(updateChecker->outcome()->id == shown.id, !newer);
        QCOMPARE(outcomes.size(), newer ? 3 : 1);
        const QString target = u"/quorle/version.json?uuid=" + updateChecker->installID() +
                               (running == u"1.3" ? u"&v=1.3" : u"");
        QCOMPARE(server.targets, status ? QStringList(3, target) : QStringList());
    }

    // However the server stalls, the check ends at its deadline with a time-out.
    void endsAtTheDeadline_data() {
        QTest::addColumn<QByteArrayList>("queued");
        QTest::addColumn<int>("dripFrom");
        QTest::addColumn<int>("requests");
        const QByteArray redirect = FeedServer::response(302, {}, 0, "Location: /silent\r\n");
        QTest::newRow("silent") << QByteArrayList() << -1 << 1;
        QTest::newRow("redirect to silence") << QByteArrayList{redirect} << -1 << 2;
        QTest::newRow("slow headers") << QByteArrayList{FeedServer::response(200, "2.0")} << 0 << 1;
        QTest::newRow("dripping body")
            << QByteArrayList{FeedServer::response(200, QByteArray(200, ' ') + "2.0")}
            << int(FeedServer::response(200, {}).size()) << 1;
    }
    void endsAtTheDeadline() {
        QFETCH(QByteArrayList, queued);
        QFETCH(int, dripFrom);
        QFETCH(int, requests);
        FeedServer server;
        server.hold();
        server.queued = queued;
        server.dripFrom = dripFrom;
        auto updateChecker = checker(u"1.3"_s, server.url);
        updateChecker->setDeadline(std::chrono::milliseconds(1000));
        // Without the deadline the drips would last 20 s and the silence forever.
        QVERIFY(runsToTheEnd(*updateChecker, true));
        QCOMPARE(describe(updateChecker->outcome()),
                 u"The update server did not answer within 1 seconds."_s);
        QCOMPARE(server.targets.size(), requests);
    }
};

QTEST_GUILESS_MAIN(UpdateCheckerTest)
#include "UpdateCheckerTest.moc"
