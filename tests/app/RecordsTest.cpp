#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/TransferProgress.h"
#include "app/UploadRecord.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;
using namespace tarnwick::testing;

class RecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Each name gives its JobFile's name, or the description of its error.
    void jobFileValidation() {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(u"jobs.nc"_s));
        const QStringList names{u"part.NC"_s,     u"my part.v2.Cnc"_s, u"part.GCODE"_s,
                                u"part.nc.zip"_s, u"notes.TXT"_s,      u"README"_s,
                                u"jobs.nc"_s};
        QStringList results;
        for (const QString& name : names) {
            const QUrl url = name == u"jobs.nc" ? QUrl::fromLocalFile(dir.filePath(name))
                                                : writeFile(dir, name, "G0 X0\n");
            const Result<JobFile> file = JobFile::fromUrl(url);
            if (!file) {
                results << file.error().description();
                continue;
            }
            QCOMPARE(file.value(), (JobFile{url, 6, QFileInfo(url.toLocalFile()).lastModified()}));
            QCOMPARE(file->id(), dir.filePath(name));
            results << file->fileName();
        }
        const auto unsupported = [](const char* extension) {
            return JobFileError::unsupportedExtension(QLatin1String(extension)).description();
        };
        QCOMPARE(results,
                 (QStringList{names[0], names[1], names[2], unsupported("zip"), unsupported("txt"),
                              unsupported(""), JobFileError::notARegularFile().description()}));
    }

    void jobFileReadingErrors() {
        QTemporaryDir dir;
        QCOMPARE(JobFile::fromUrl(writeFile(dir, u"empty.nc"_s, {}))->size, 0);
        const auto missing = JobFile::fromUrl(QUrl::fromLocalFile(dir.filePath(u"gone.nc"_s)));
        QVERIFY(missing.error().is<PlatformError>());
        QVERIFY(missing.error().description().contains(u"gone.nc"_s));
    }

    // The one place where the errors' texts are spelled out; other tests use description().
    void errorTexts() {
        const QList<std::pair<Error, const char*>> rows{
            {JobFileError::unsupportedExtension(u"txt"_s),
             "The .txt extension is not supported. Choose an .nc, .cnc or .gcode file."},
            {JobFileError::unsupportedExtension({}),
             "The . extension is not supported. Choose an .nc, .cnc or .gcode file."},
            {JobFileError::notARegularFile(), "Please choose a regular file."},
            {UploadError::rejected({}), "The machine rejected the upload: "},
            {UploadError::invalidResponse(u"x"_s), "The machine returned an invalid response: x"},
            {UploadError::cancelled(), "The upload was cancelled."},
            {UploadError::timedOut(), "The machine did not respond before the upload timed out."},
        };
        for (const auto& [error, text] : rows)
            QCOMPARE(error.description(), QString::fromUtf8(text));
        QVERIFY(UploadError::rejected(u"x"_s) != UploadError::rejected(u"y"_s));
        QVERIFY(UploadError::rejected(u"x"_s) != UploadError::invalidResponse(u"x"_s));
        QVERIFY(Error(UploadError::cancelled()) != Error(CancellationError{}));
    }

    void canonicalIPv4() {
        for (const char* address : {"0.0.0.0", "255.255.255.255", "192.168.1.5"})
            QVERIFY2(isCanonicalIPv4(QString::fromLatin1(address)), address);
        for (const char* address : {"192.168.001.5", "256.1.1.1", "1.2.3", "1.2.3.4.5", "1..2.3.4",
                                    "+1.2.3.4", "1.2.3.4 ", "1.2.3.\u0664", "", "1.2.3.1000"})
            QVERIFY2(!isCanonicalIPv4(QString::fromUtf8(address)), address);
    }

    // Same machine, path and size, no older than a day, counts.
    void duplicateWindow() {
        const QDateTime now(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);
        const auto duplicate = [&](const QString& machine, qint64 size, qint64 age) {
            return isRecentDuplicate({{u"m"_s, u"/a.nc"_s, 5, now.addSecs(-age)}}, machine,
                                     u"/a.nc"_s, size, now);
        };
        QCOMPARE(QList<bool>({duplicate(u"m"_s, 5, 0), duplicate(u"m"_s, 5, 86400),
                              duplicate(u"m"_s, 5, 86401), duplicate(u"m"_s, 6, 10),
                              duplicate(u"n"_s, 5, 10)}),
                 QList<bool>({true, true, false, false, false}));
        QVERIFY(!isRecentDuplicate({}, u"m"_s, u"/a.nc"_s, 5, now));
    }

    void machineIdentityAndEquality() {
        const Machine a{u"Mill"_s, std::nullopt, u"10.0.0.5"_s, 80,
                        Machine::ConnectionStatus::Discovered};
        Machine connected = a;
        connected.status = Machine::ConnectionStatus::Connected;
        Machine otherPort = a;
        otherPort.port = 2222;
        Machine emptyModel = a;
        emptyModel.model = QString();
        QCOMPARE(a.id(), u"10.0.0.5:80"_s);
        QCOMPARE(connected.id(), a.id());
        QVERIFY(connected != a && otherPort.id() != a.id() && emptyModel != a);
        QVERIFY(qHash(emptyModel) != qHash(a));
        QCOMPARE(connectionStatusFromRawValue(u"busy"_s), Machine::ConnectionStatus::Busy);
        QCOMPARE(rawValue(Machine::ConnectionStatus::Unavailable), u"unavailable"_s);
        QCOMPARE(rawValue(TransferProgress::Phase::Preparing), u"preparing"_s);
        for (const char* text : {"offline", "Busy", "busy ", "1", "Machine::busy", ""})
            QVERIFY2(!connectionStatusFromRawValue(QString::fromLatin1(text)), text);
        QVERIFY(!phaseFromRawValue(u"Uploading"_s));
    }

    void progressFraction() {
        using Phase = TransferProgress::Phase;
        const QList<TransferProgress> values{
            {Phase::Preparing, 0, 100, 0},   {Phase::Uploading, 25, 100, 5e6},
            {Phase::Uploading, 150, 100, 0}, {Phase::Uploading, -5, 100, 0},
            {Phase::Uploading, 0, 0, 0},     {Phase::Completed, 0, 0, 0}};
        QList<double> fractions;
        for (const TransferProgress& value : values)
            fractions << value.fraction();
        QCOMPARE(fractions, QList<double>({0.0, 0.25, 1.0, 0.0, 0.0, 1.0}));
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "RecordsTest.moc"
