#include "BuildConfig.h"
#include "update/AppVersion.h"
#include "update/UpdateFeed.h"

#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;

class VersionAndFeedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_APPLESS_MAIN(VersionAndFeedTest)
#include "VersionAndFeedTest.moc"
