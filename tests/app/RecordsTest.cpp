#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/TransferProgress.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

class RecordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void jobFileAcceptsExtensionsInAnyCase_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("upper") << QStringLiteral("part.NC");
        QTest::newRow("mixed") << QStringLiteral("part.Cnc");
        QTest::newRow("gcode") << QStringLiteral("part.GCODE");
        QTest::newRow("blank and dots") << QStringLiteral("my part.v2.nc");
    }
    void jobFileAcceptsExtensionsInAnyCase() {
        QFETCH(QString, name);
        QTemporaryDir dir;
        const QUrl url = writeFile(dir, name, "G0 X0\n");
        const Result<JobFile> file = JobFile::fromUrl(url);
        QVERIFY(file.ok());
        QCOMPARE(file->url, url);
        QCOMPARE(file->size, 6);
        QVERIFY(file->modifiedAt.has_value());
        QCOMPARE(file->id(), dir.filePath(name));
        QCOMPARE(file->fileName(), name);
    }

    void jobFileRefusals() {
        QTemporaryDir dir;
        const auto zip = JobFile::fromUrl(writeFile(dir, QStringLiteral("part.nc.zip"), "x"));
        QCOMPARE(zip.error(), Error(JobFileError::unsupportedExtension(QStringLiteral("zip"))));

        const auto upper = JobFile::fromUrl(writeFile(dir, QStringLiteral("notes.TXT"), "x"));
        QCOMPARE(upper.error().description(),
                 QStringLiteral("The .txt extension is not supported. Choose an .nc, .cnc or "
                                ".gcode file."));

        const auto bare = JobFile::fromUrl(writeFile(dir, QStringLiteral("README"), "x"));
        QCOMPARE(bare.error(), Error(JobFileError::unsupportedExtension(QString())));
        QCOMPARE(bare.error().description(),
                 QStringLiteral("The . extension is not supported. Choose an .nc, .cnc or "
                                ".gcode file."));

        // The regular-file test comes before the extension test.
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("jobs.nc")));
        const auto folder =
            JobFile::fromUrl(QUrl::fromLocalFile(dir.filePath(QStringLiteral("jobs.nc"))));
        QCOMPARE(folder.error(), Error(JobFileError::notARegularFile()));
        QCOMPARE(folder.error().description(), QStringLiteral("Please choose a regular file."));

        const auto missing =
            JobFile::fromUrl(QUrl::fromLocalFile(dir.filePath(QStringLiteral("gone.nc"))));
        QVERIFY(missing.error().is<PlatformError>());
        QVERIFY(missing.error().description().contains(QStringLiteral("gone.nc")));
    }

    void emptyJobFileIsAcceptedWithSizeZero() {
        QTemporaryDir dir;
        const auto file = JobFile::fromUrl(writeFile(dir, QStringLiteral("empty.nc"), {}));
        QVERIFY(file.ok());
        QCOMPARE(file->size, 0);
    }

    void machineIdentityAndEquality() {
        const Machine a{QStringLiteral("Mill"), std::nullopt, QStringLiteral("10.0.0.5"), 80,
                        Machine::ConnectionStatus::Discovered};
        Machine b = a;
        b.status = Machine::ConnectionStatus::Connected;
        QCOMPARE(a.id(), QStringLiteral("10.0.0.5:80"));
        QCOMPARE(a.id(), b.id());
        QVERIFY(a != b);
        Machine other = a;
        other.port = 2222;
        QVERIFY(other.id() != a.id());
        Machine withEmptyModel = a;
        withEmptyModel.model = QString();
        QVERIFY(withEmptyModel != a);
        QVERIFY(qHash(withEmptyModel) != qHash(a));
    }

    void rawValuesMatchExactly() {
        QCOMPARE(rawValue(Machine::ConnectionStatus::Unavailable), QStringLiteral("unavailable"));
        QCOMPARE(connectionStatusFromRawValue(QStringLiteral("busy")),
                 Machine::ConnectionStatus::Busy);
        QVERIFY(!connectionStatusFromRawValue(QStringLiteral("offline")));
        QCOMPARE(phaseFromRawValue(QStringLiteral("uploading")),
                 TransferProgress::Phase::Uploading);
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

    void uploadErrorsCompareByCaseAndMessage() {
        const QString m = QStringLiteral("x");
        QCOMPARE(UploadError::rejected(m), UploadError::rejected(m));
        QVERIFY(UploadError::rejected(m) != UploadError::invalidResponse(m));
        QVERIFY(UploadError::rejected(m) != UploadError::rejected(QStringLiteral("y")));
        QCOMPARE(UploadError::cancelled(), UploadError::cancelled());
        QVERIFY(UploadError::cancelled() != UploadError::timedOut());
        QVERIFY(Error(UploadError::cancelled()) != Error(CancellationError{}));
    }

    void uploadErrorDescriptions() {
        QCOMPARE(UploadError::rejected({}).description(),
                 QStringLiteral("The machine rejected the upload: "));
        QCOMPARE(Error(UploadError::rejected(QStringLiteral("The machine cancelled the transfer.")))
                     .description(),
                 QStringLiteral("The machine rejected the upload: The machine cancelled the "
                                "transfer."));
        QCOMPARE(UploadError::invalidResponse(QStringLiteral("The machine closed the connection."))
                     .description(),
                 QStringLiteral("The machine returned an invalid response: The machine closed "
                                "the connection."));
        QCOMPARE(UploadError::cancelled().description(),
                 QStringLiteral("The upload was cancelled."));
        QCOMPARE(UploadError::timedOut().description(),
                 QStringLiteral("The machine did not respond before the upload timed out."));
    }

    void canonicalAddresses_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("valid");
        QTest::newRow("plain") << QStringLiteral("192.168.1.20") << true;
        QTest::newRow("zeros") << QStringLiteral("0.0.0.0") << true;
        QTest::newRow("ones") << QStringLiteral("255.255.255.255") << true;
        QTest::newRow("leading zero") << QStringLiteral("192.168.001.5") << false;
        QTest::newRow("double zero") << QStringLiteral("1.00.2.3") << false;
        QTest::newRow("over 255") << QStringLiteral("256.1.1.1") << false;
        QTest::newRow("three pieces") << QStringLiteral("1.2.3") << false;
        QTest::newRow("five pieces") << QStringLiteral("1.2.3.4.5") << false;
        QTest::newRow("empty piece") << QStringLiteral("1..2.3.4") << false;
        QTest::newRow("trailing dot") << QStringLiteral("1.2.3.4.") << false;
        QTest::newRow("plus sign") << QStringLiteral("+1.2.3.4") << false;
        QTest::newRow("minus sign") << QStringLiteral("1.-2.3.4") << false;
        QTest::newRow("blank") << QStringLiteral(" 1.2.3.4") << false;
        QTest::newRow("arabic-indic digit") << QStringLiteral("1.2.3.\u0664") << false;
        QTest::newRow("empty") << QString() << false;
    }
    void canonicalAddresses() {
        QFETCH(QString, address);
        QFETCH(bool, valid);
        QCOMPARE(isCanonicalIPv4(address), valid);
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "RecordsTest.moc"
