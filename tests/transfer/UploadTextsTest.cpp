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
        QCOMPARE(command.error().description(),
                 QStringLiteral("The machine rejected the upload: The filename contains a path "
                                "separator."));
    }

    void fileTypeReport_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("fileType");
        QTest::addColumn<bool>("found");
        QTest::newRow("blanks and line feed")
            << QStringLiteral("ok ftype = abc1\n") << QStringLiteral("abc1") << true;
        QTest::newRow("tight") << QStringLiteral("ftype=lz") << QStringLiteral("lz") << true;
        QTest::newRow("tabs") << QStringLiteral("x ftype\t=\tRAW2 y") << QStringLiteral("RAW2")
                              << true;
        QTest::newRow("stops at a hyphen")
            << QStringLiteral("ftype=a-b") << QStringLiteral("a") << true;
        QTest::newRow("first report wins")
            << QStringLiteral("ftype=one ftype=two") << QStringLiteral("one") << true;
        QTest::newRow("upper case word") << QStringLiteral("FTYPE=abc1") << QString() << false;
        QTest::newRow("no value") << QStringLiteral("ftype = ") << QString() << false;
        QTest::newRow("line feed is not a blank")
            << QStringLiteral("ftype\n=abc") << QString() << false;
        QTest::newRow("nothing") << QString() << QString() << false;
    }
    void fileTypeReport() {
        QFETCH(QString, text);
        QFETCH(QString, fileType);
        QFETCH(bool, found);
        const std::optional<QString> result = MakeraCapability::fileType(text);
        QCOMPARE(result.has_value(), found);
        if (found)
            QCOMPARE(*result, fileType);
    }
};

QTEST_GUILESS_MAIN(UploadTextsTest)
#include "UploadTextsTest.moc"
