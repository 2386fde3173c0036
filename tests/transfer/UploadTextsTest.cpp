#include "transfer/MakeraCapability.h"
#include "transfer/MakeraFilename.h"

#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;

class UploadTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The command's payload, or why there is none; an escaped name reads back as it was.
    void uploadCommand_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char* name, const char* file, const QVariant& expected) {
            QTest::newRow(name) << QString::fromUtf8(file) << expected;
        };
        const auto command = [](const QByteArray& escaped) {
            return QVariant("upload /sd/gcodes/" + escaped + '\n');
        };
        const QVariant separator = QVariant::fromValue(
            Error(UploadError::rejected(u"The filename contains a path separator."_s)));
        row("plain", "part.nc", command("part.nc"));
        row("blank", "my part.nc", command("my\x01part.nc"));
        row("blank and question mark", "a b?.nc",
            command("a\x01"
                    "b\x02.nc"));
        row("every escaped character", " ?*!~.nc", command("\x01\x02\x03\x04\x05.nc"));
        row("non-ASCII stays UTF-8", "Teil ü.nc", command("Teil\x01\xC3\xBC.nc"));
        row("dots inside", "...nc", command("...nc"));
        row("slash", "a/b.nc", separator);
        row("backslash", "a\\b.nc", separator);
        row("leading slash", "/part.nc", separator);
        row("dot", ".", separator);
        row("two dots", "..", separator);
        row("backslash dots", "..\\x.nc", separator);
    }
    void uploadCommand() {
        QFETCH(QString, name);
        const Result<QByteArray> command = MakeraFilename::uploadCommand(name);
        QTEST(command ? QVariant(command.value()) : QVariant::fromValue(command.error()),
              "expected");
        if (command)
            QCOMPARE(MakeraFilename::unescape(QString::fromUtf8(command->sliced(18).chopped(1))),
                     name);
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
