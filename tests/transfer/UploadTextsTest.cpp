#include "transfer/MakeraCapability.h"
#include "transfer/MakeraFilename.h"

#include <QTest>

using namespace tarnwick;

class UploadTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void uploadCommandEscapesTheName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("plain") << QStringLiteral("part.nc")
                               << QByteArray("upload /sd/gcodes/part.nc\n");
        QTest::newRow("blank") << QStringLiteral("my part.nc")
                               << QByteArray("upload /sd/gcodes/my\x01part.nc\n");
        QTest::newRow("blank and question mark") << QStringLiteral("a b?.nc")
                                                 << QByteArray("upload /sd/gcodes/a\x01"
                                                               "b\x02.nc\n");
        QTest::newRow("every escaped character")
            << QStringLiteral(" ?*!~.nc")
            << QByteArray("upload /sd/gcodes/\x01\x02\x03\x04\x05.nc\n");
        QTest::newRow("non-ASCII stays UTF-8")
            << QStringLiteral("Teil ü.nc") << QByteArray("upload /sd/gcodes/Teil\x01\xC3\xBC.nc\n");
        QTest::newRow("dots inside")
            << QStringLiteral("...nc") << QByteArray("upload /sd/gcodes/...nc\n");
    }
    void uploadCommandEscapesTheName() {
        QFETCH(QString, name);
        QFETCH(QByteArray, payload);
        const Result<QByteArray> command = MakeraFilename::uploadCommand(name);
        QVERIFY(command.ok());
        QCOMPARE(command.value(), payload);
        const QString escapedName =
            QString::fromUtf8(command.value().mid(18, command.value().size() - 19));
        QCOMPARE(MakeraFilename::unescape(escapedName), name);
    }

    void uploadCommandRefusesSeparators_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("slash") << QStringLiteral("a/b.nc");
        QTest::newRow("backslash") << QStringLiteral("a\\b.nc");
        QTest::newRow("leading slash") << QStringLiteral("/part.nc");
        QTest::newRow("dot") << QStringLiteral(".");
        QTest::newRow("two dots") << QStringLiteral("..");
        QTest::newRow("backslash dots") << QStringLiteral("..\\x.nc");
    }
    void uploadCommandRefusesSeparators() {
        QFETCH(QString, name);
        const Result<QByteArray> command = MakeraFilename::uploadCommand(name);
        QVERIFY(!command.ok());
        QCOMPARE(command.error(), Error(UploadError::rejected(
                                      QStringLiteral("The filename contains a path separator."))));
    }

    void fileTypeReport_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<QString>>("fileType");
        const auto row = [](const char* name, const char* text, std::optional<QString> type) {
            QTest::newRow(name) << QString::fromUtf8(text) << type;
        };
        row("blanks and line feed", "ok ftype = abc1\n", QStringLiteral("abc1"));
        row("tight", "ftype=lz", QStringLiteral("lz"));
        row("tabs", "x ftype\t=\tRAW2 y", QStringLiteral("RAW2"));
        row("stops at a hyphen", "ftype=a-b", QStringLiteral("a"));
        row("first report wins", "ftype=one ftype=two", QStringLiteral("one"));
        row("upper case word", "FTYPE=abc1", std::nullopt);
        row("no value", "ftype = ", std::nullopt);
        row("line feed is not a blank", "ftype\n=abc", std::nullopt);
        row("nothing", "", std::nullopt);
    }
    void fileTypeReport() {
        QFETCH(QString, text);
        QTEST(MakeraCapability::fileType(text), "fileType");
    }
};

QTEST_GUILESS_MAIN(UploadTextsTest)
#include "UploadTextsTest.moc"
