#include "BuildConfig.h"
#include "update/AppVersion.h"
#include "update/UpdateFeed.h"

#include <QTest>

using namespace tarnwick;

Q_DECLARE_METATYPE(QList<qint64>)

namespace {

AppVersion version(const char* text) {
    const std::optional<AppVersion> parsed = AppVersion::fromText(QString::fromUtf8(text));
    if (!parsed)
        qFatal("not a version: %s", text);
    return *parsed;
}

QUrl updateHostURL(const char* path) {
    return QUrl(QStringLiteral("https://") + QLatin1String(build::updateHost) +
                QLatin1String(path));
}

} // namespace

class VersionAndFeedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsVersions_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<qint64>>("components");
        QTest::addColumn<QString>("description");

        QTest::newRow("three") << QStringLiteral("1.2.3") << QList<qint64>{1, 2, 3}
                               << QStringLiteral("1.2.3");
        QTest::newRow("trailing newline")
            << QStringLiteral("2.0\n") << QList<qint64>{2, 0} << QStringLiteral("2.0");
        QTest::newRow("leading zero and blanks")
            << QStringLiteral(" \t01.2 \r\n") << QList<qint64>{1, 2} << QStringLiteral("1.2");
        QTest::newRow("unicode white space") << QStringLiteral("\u00A0\u20031.4\u2028\u0085")
                                             << QList<qint64>{1, 4} << QStringLiteral("1.4");
        QTest::newRow("double dot")
            << QStringLiteral("1..2") << QList<qint64>{1, 2} << QStringLiteral("1.2");
        QTest::newRow("trailing dot")
            << QStringLiteral("3.") << QList<qint64>{3} << QStringLiteral("3");
        QTest::newRow("leading dot")
            << QStringLiteral(".7") << QList<qint64>{7} << QStringLiteral("7");
        QTest::newRow("signs") << QStringLiteral("+1.-2.-0") << QList<qint64>{1, -2, 0}
                               << QStringLiteral("1.-2.0");
        QTest::newRow("64-bit limits")
            << QStringLiteral("9223372036854775807.-9223372036854775808")
            << QList<qint64>{std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}
            << QStringLiteral("9223372036854775807.-9223372036854775808");
    }

    void readsVersions() {
        QFETCH(QString, text);
        QFETCH(QList<qint64>, components);
        QFETCH(QString, description);

        const std::optional<AppVersion> parsed = AppVersion::fromText(text);
        QVERIFY(parsed);
        QCOMPARE(parsed->components(), components);
        QCOMPARE(parsed->description(), description);
    }

    void refusesTextsThatAreNoVersion_data() {
        QTest::addColumn<QString>("text");

        QTest::newRow("empty") << QString();
        QTest::newRow("blanks only") << QStringLiteral(" \n\t");
        QTest::newRow("lone dot") << QStringLiteral(".");
        QTest::newRow("dots only") << QStringLiteral("..");
        QTest::newRow("suffix") << QStringLiteral("1.2-beta");
        QTest::newRow("leading letter") << QStringLiteral("v1.2");
        QTest::newRow("digit and letter") << QStringLiteral("1b");
        QTest::newRow("inner blank") << QStringLiteral("1. 2");
        QTest::newRow("sign alone") << QStringLiteral("1.+");
        QTest::newRow("two signs") << QStringLiteral("--1");
        QTest::newRow("too large") << QStringLiteral("9223372036854775808");
        QTest::newRow("too small") << QStringLiteral("1.-9223372036854775809");
        QTest::newRow("non-ASCII digits") << QStringLiteral("\u0661.2");
        QTest::newRow("full-width digit") << QStringLiteral("1.\uFF12");
        QTest::newRow("hexadecimal") << QStringLiteral("0x10");
        QTest::newRow("comma") << QStringLiteral("1,2");
    }

    void refusesTextsThatAreNoVersion() {
        QFETCH(QString, text);
        QVERIFY(!AppVersion::fromText(text));
    }

    void ordersComponentByComponent_data() {
        QTest::addColumn<QString>("lower");
        QTest::addColumn<QString>("higher");

        QTest::newRow("numeric not textual") << QStringLiteral("1.9") << QStringLiteral("1.10");
        QTest::newRow("first component wins") << QStringLiteral("1.99.99") << QStringLiteral("2");
        QTest::newRow("extra component") << QStringLiteral("1.2") << QStringLiteral("1.2.1");
        QTest::newRow("missing counts as zero")
            << QStringLiteral("1.2.-1") << QStringLiteral("1.2");
        QTest::newRow("negative") << QStringLiteral("-1") << QStringLiteral("0");
        QTest::newRow("extremes") << QStringLiteral("-9223372036854775808")
                                  << QStringLiteral("9223372036854775807");
    }

    void ordersComponentByComponent() {
        QFETCH(QString, lower);
        QFETCH(QString, higher);
        const AppVersion a = *AppVersion::fromText(lower);
        const AppVersion b = *AppVersion::fromText(higher);

        QVERIFY(a < b);
        QVERIFY(a <= b);
        QVERIFY(b > a);
        QVERIFY(b >= a);
        QVERIFY(a != b);
        QVERIFY(!(b < a));
        QVERIFY(!(a > b));
        QVERIFY(!(a >= b));
        QVERIFY(!(b <= a));
        QVERIFY(!(a == b));
    }

    void trailingZerosDoNotMatter() {
        QVERIFY(version("1.2") == version("1.2.0.0"));
        QVERIFY(version("1.2.0.0") == version("1.2"));
        QVERIFY(!(version("1.2") < version("1.2.0")));
        QVERIFY(!(version("1.2.0") < version("1.2")));
        QVERIFY(version("1.2") <= version("1.2.0") && version("1.2") >= version("1.2.0"));
        QVERIFY(version("0") == AppVersion());
        // Equal, yet each keeps its own text.
        QCOMPARE(version("1.2.0.0").description(), QStringLiteral("1.2.0.0"));
    }

    void feedConstantsShareTheUpdateHost() {
        QCOMPARE(UpdateFeed::feedURL(), updateHostURL("/quorle/version.json"));
        QCOMPARE(UpdateFeed::fallbackDownloadURL(), updateHostURL("/quorle/"));
        QVERIFY(UpdateFeed::feedURL().isValid());
    }

    void readsFeedBodies_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QUrl>("downloadURL");

        const QUrl fallback = UpdateFeed::fallbackDownloadURL();
        const QUrl page(QStringLiteral("https://downloads.example.com/tarnwick/2.1"));

        QTest::newRow("json with url")
            << QByteArray(
                   "{\"version\":\"2.1\",\"url\":\"https://downloads.example.com/tarnwick/2.1\"}")
            << QStringLiteral("2.1") << page;
        QTest::newRow("json without url")
            << QByteArray("{\"version\":\"2.1\"}") << QStringLiteral("2.1") << fallback;
        QTest::newRow("json with empty url") << QByteArray("{\"version\":\"2.1\",\"url\":\"\"}")
                                             << QStringLiteral("2.1") << fallback;
        QTest::newRow("json with null url") << QByteArray("{\"version\":\"2.1\",\"url\":null}")
                                            << QStringLiteral("2.1") << fallback;
        QTest::newRow("json with relative url")
            << QByteArray("{\"version\":\"2.1\",\"url\":\"downloads/2.1\"}")
            << QStringLiteral("2.1") << fallback;
        QTest::newRow("json with malformed url")
            << QByteArray("{\"version\":\"2.1\",\"url\":\"https://exa mple.com/\"}")
            << QStringLiteral("2.1") << fallback;
        QTest::newRow("json with other keys and blanks")
            << QByteArray("\n { \"notes\": [1, 2], \"version\": \" 3.0.1\\n\" }\n")
            << QStringLiteral("3.0.1") << fallback;
        QTest::newRow("text with newline")
            << QByteArray("2.1\n") << QStringLiteral("2.1") << fallback;
        QTest::newRow("text with blanks")
            << QByteArray("\r\n  1.4.2 \t") << QStringLiteral("1.4.2") << fallback;
        QTest::newRow("json number is read as text")
            << QByteArray("2.1") << QStringLiteral("2.1") << fallback;
    }

    void readsFeedBodies() {
        QFETCH(QByteArray, body);
        QFETCH(QString, version);
        QFETCH(QUrl, downloadURL);

        const std::optional<UpdateFeed> feed = UpdateFeed::fromData(body);
        QVERIFY(feed);
        QCOMPARE(feed->version.description(), version);
        QCOMPARE(feed->downloadURL, downloadURL);
    }

    void refusesFeedBodies_data() {
        QTest::addColumn<QByteArray>("body");

        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank lines") << QByteArray("\n\n");
        QTest::newRow("json version beta") << QByteArray("{\"version\":\"beta\"}");
        QTest::newRow("json version empty") << QByteArray("{\"version\":\"\"}");
        QTest::newRow("url without version")
            << QByteArray("{\"url\":\"https://downloads.example.com/\"}");
        QTest::newRow("version is a number") << QByteArray("{\"version\":2.1}");
        QTest::newRow("url is a number") << QByteArray("{\"version\":\"2.1\",\"url\":7}");
        QTest::newRow("array") << QByteArray("[\"2.1\"]");
        QTest::newRow("json string") << QByteArray("\"2.1\"");
        QTest::newRow("truncated json") << QByteArray("{\"version\":\"2.1\"");
        QTest::newRow("html page") << QByteArray("<html><body>Not here</body></html>");
        QTest::newRow("invalid utf-8") << QByteArray("2.1\xFF");
        QTest::newRow("overlong utf-8") << QByteArray("\xC0\xAE"
                                                      "2");
        QTest::newRow("two versions") << QByteArray("2.1\n2.2\n");
    }

    void refusesFeedBodies() {
        QFETCH(QByteArray, body);
        QVERIFY(!UpdateFeed::fromData(body));
    }
};

QTEST_APPLESS_MAIN(VersionAndFeedTest)
#include "VersionAndFeedTest.moc"
