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

    void ordersComponentByComponent() {
        const auto relations = [](QStringView left, QStringView right) {
            const AppVersion a = AppVersion::fromText(left).value();
            const AppVersion b = AppVersion::fromText(right).value();
            return QList<bool>({a < b, a == b, b < a, a <= b, a >= b});
        };
        const QList<bool> less{true, false, false, true, false};
        const QList<bool> equal{false, true, false, true, true};
        const QList<bool> greater{false, false, true, false, true};
        QCOMPARE(relations(u"1.2", u"1.2.0.0"), equal);
        QCOMPARE(relations(u"1.9", u"1.10"), less);
        QCOMPARE(relations(u"2", u"1.99.99"), greater);
        QCOMPARE(relations(u"1.2", u"1.2.1"), less);
        QCOMPARE(relations(u"1.2.-1", u"1.2"), less);
    }
};

QTEST_APPLESS_MAIN(VersionAndFeedTest)
#include "VersionAndFeedTest.moc"
