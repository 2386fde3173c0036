#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/TransferProgress.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

class RecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void jobFileValidation_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<std::optional<Error>>("error");
        const auto unsupported = [](const char* extension) {
            return std::optional<Error>(
                JobFileError::unsupportedExtension(QLatin1String(extension)));
        };
        QTest::newRow("upper") << QStringLiteral("part.NC") << std::optional<Error>();
        QTest::newRow("mixed") << QStringLiteral("my part.v2.Cnc") << std::optional<Error>();
        QTest::newRow("gcode") << QStringLiteral("part.GCODE") << std::optional<Error>();
        QTest::newRow("zip") << QStringLiteral("part.nc.zip") << unsupported("zip");
        QTest::newRow("txt") << QStringLiteral("notes.TXT") << unsupported("txt");
        QTest::newRow("none") << QStringLiteral("README") << unsupported("");
        QTest::newRow("folder") << QStringLiteral("jobs.nc/")
                                << std::optional<Error>(JobFileError::notARegularFile());
    }
    void jobFileValidation() {
        QFETCH(QString, name);
        QFETCH(std::optional<Error>, error);
        QTemporaryDir dir;
        QUrl url;
        if (name.endsWith(QLatin1Char('/'))) {
            name.chop(1);
            QVERIFY(QDir(dir.path()).mkdir(name));
            url = QUrl::fromLocalFile(dir.filePath(name));
        } else {
            url = writeFile(dir, name, "G0 X0\n");
        }
        const Result<JobFile> file = JobFile::fromUrl(url);
        if (error) {
            QCOMPARE(file.error(), *error);
            return;
        }
        QCOMPARE(file.value(), (JobFile{url, 6, QFileInfo(url.toLocalFile()).lastModified()}));
        QCOMPARE(file->id(), dir.filePath(name));
        QCOMPARE(file->fileName(), name);
    }

    void jobFileTexts() {
        QCOMPARE(Error(JobFileError::unsupportedExtension(QStringLiteral("txt"))).description(),
                 QStringLiteral("The .txt extension is not supported. Choose an .nc, .cnc or "
                                ".gcode file."));
        QCOMPARE(JobFileError::unsupportedExtension({}).description(),
                 QStringLiteral("The . extension is not supported. Choose an .nc, .cnc or "
                                ".gcode file."));
        QCOMPARE(JobFileError::notARegularFile().description(),
                 QStringLiteral("Please choose a regular file."));

        QTemporaryDir dir;
        QCOMPARE(JobFile::fromUrl(writeFile(dir, QStringLiteral("empty.nc"), {}))->size, 0);
        const auto missing =
            JobFile::fromUrl(QUrl::fromLocalFile(dir.filePath(QStringLiteral("gone.nc"))));
        QVERIFY(missing.error().is<PlatformError>());
        QVERIFY(missing.error().description().contains(QStringLiteral("gone.nc")));
    }

    void machineIdentityAndEquality() {
        const Machine a{QStringLiteral("Mill"), std::nullopt, QStringLiteral("10.0.0.5"), 80,
                        Machine::ConnectionStatus::Discovered};
        Machine connected = a;
        connected.status = Machine::ConnectionStatus::Connected;
        Machine otherPort = a;
        otherPort.port = 2222;
        Machine emptyModel = a;
        emptyModel.model = QString();
        QCOMPARE(a.id(), QStringLiteral("10.0.0.5:80"));
        QCOMPARE(connected.id(), a.id());
        QVERIFY(connected != a && otherPort.id() != a.id() && emptyModel != a);
        QVERIFY(qHash(emptyModel) != qHash(a));
        QCOMPARE(connectionStatusFromRawValue(QStringLiteral("busy")),
                 Machine::ConnectionStatus::Busy);
        QVERIFY(!connectionStatusFromRawValue(QStringLiteral("offline")));
        QVERIFY(!phaseFromRawValue(QStringLiteral("Uploading")));
    }

    void progressFraction_data() {
        using Phase = TransferProgress::Phase;
        QTest::addColumn<TransferProgress>("progress");
        QTest::addColumn<double>("fraction");
        QTest::newRow("preparing none") << TransferProgress{Phase::Preparing, 0, 100, 0} << 0.0;
        QTest::newRow("quarter") << TransferProgress{Phase::Uploading, 25, 100, 5e6} << 0.25;
        QTest::newRow("over") << TransferProgress{Phase::Uploading, 150, 100, 0} << 1.0;
        QTest::newRow("negative") << TransferProgress{Phase::Uploading, -5, 100, 0} << 0.0;
        QTest::newRow("empty uploading") << TransferProgress{Phase::Uploading, 0, 0, 0} << 0.0;
        QTest::newRow("empty completed") << TransferProgress{Phase::Completed, 0, 0, 0} << 1.0;
    }
    void progressFraction() {
        QFETCH(TransferProgress, progress);
        QFETCH(double, fraction);
        QCOMPARE(progress.fraction(), fraction);
    }

    void uploadErrors() {
        const QString m = QStringLiteral("x");
        QVERIFY(UploadError::rejected(m) == UploadError::rejected(m));
        QVERIFY(UploadError::rejected(m) != UploadError::invalidResponse(m));
        QVERIFY(UploadError::rejected(m) != UploadError::rejected(QStringLiteral("y")));
        QVERIFY(UploadError::cancelled() != UploadError::timedOut());
        QVERIFY(Error(UploadError::cancelled()) != Error(CancellationError{}));
        QCOMPARE(UploadError::rejected({}).description(),
                 QStringLiteral("The machine rejected the upload: "));
        QCOMPARE(UploadError::invalidResponse(m).description(),
                 QStringLiteral("The machine returned an invalid response: x"));
        QCOMPARE(UploadError::cancelled().description(),
                 QStringLiteral("The upload was cancelled."));
        QCOMPARE(UploadError::timedOut().description(),
                 QStringLiteral("The machine did not respond before the upload timed out."));
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "RecordsTest.moc"
