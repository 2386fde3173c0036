#include "app/AppPersistence.h"
#include "app/DisplayName.h"
#include "app/Errors.h"
#include "app/IniText.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/SettingsStore.h"
#include "app/TransferProgress.h"
#include "app/TransferTexts.h"
#include "app/UploadRecord.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <limits>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace tarnwick;
using namespace Qt::StringLiterals;
using namespace tarnwick::testing;

namespace {

const QDateTime newYear2026 = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);

Machine mill() {
    return {u"Mill"_s, std::nullopt, u"192.168.1.40"_s, 2222, Machine::ConnectionStatus::Connected};
}

enum class Store {
    Locked,
    InAFile,
    RandomBytes,
    LinkToFolder,
    DiskFull,
    LinkToFile
};

UploadRecord record(int n) {
    return {u"192.168.1.40:2222"_s, u"/jobs/%1.nc"_s.arg(n), 100 + n, newYear2026.addSecs(n)};
}

} // namespace

// The records the app keeps, and the store that keeps them.
class RecordsTest : public QObject {
    Q_OBJECT

private:
    static constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    const QLocale english{QLocale::English, QLocale::UnitedStates};
    QTemporaryDir m_dir;

    AppPersistence persistence() { return AppPersistence(temporaryStore(m_dir)); }
    std::unique_ptr<QSettings> rawStore() { return temporaryStore(m_dir); }
    QByteArray stored(const QString& key) { return rawStore()->value(key).toByteArray(); }

private Q_SLOTS:
    void init() { rawStore()->clear(); }

    // Each name gives its JobFile's name, or the description of its error.
    void jobFileValidation() {
        QVERIFY(QDir(m_dir.path()).mkdir(u"jobs.nc"_s));
        const QStringList names{u"part.NC"_s,     u"my part.v2.Cnc"_s, u"part.GCODE"_s,
                                u"part.nc.zip"_s, u"notes.TXT"_s,      u"README"_s,
                                u"jobs.nc"_s};
        QStringList results;
        for (const QString& name : names) {
            const QUrl url = name == u"jobs.nc" ? QUrl::fromLocalFile(m_dir.filePath(name))
                                                : writeFile(m_dir, name, "G0 X0\n");
            const Result<JobFile> file = JobFile::fromUrl(url);
            if (!file) {
                results << file.error().description();
                continue;
            }
            QCOMPARE(file.value(), (JobFile{url, 6, QFileInfo(url.toLocalFile()).lastModified()}));
            QCOMPARE(file->id(), m_dir.filePath(name));
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
        QCOMPARE(JobFile::fromUrl(writeFile(m_dir, u"empty.nc"_s, {}))->size, 0);
        const auto missing = JobFile::fromUrl(QUrl::fromLocalFile(m_dir.filePath(u"gone.nc"_s)));
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
        Machine emptyModel = a;
        emptyModel.model = QString();
        QCOMPARE(a.id(), u"10.0.0.5:80"_s);
        QCOMPARE(connected.id(), a.id());
        QVERIFY(connected != a && emptyModel != a && qHash(emptyModel) != qHash(a));
        QCOMPARE(connectionStatusFromRawValue(u"busy"_s), Machine::ConnectionStatus::Busy);
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

    // The stored documents are compact JSON with exactly these keys, dates as seconds since 2001;
    // an absent value leaves its key out.
    void documentsRoundTripWithExactKeys() {
        const QList<JobFile> files{
            {QUrl::fromLocalFile(u"/jobs/my part.nc"_s), 20000, newYear2026.addMSecs(123)},
            {QUrl::fromLocalFile(u"/jobs/b.gcode"_s), 0, std::nullopt}};
        persistence().setSelectedMachine(mill());
        persistence().setRecentFiles(files);
        QCOMPARE(persistence().selectedMachine(), mill());
        QCOMPARE(persistence().recentFiles(), files);
        const QByteArray machine =
            R"({"ipAddress":"192.168.1.40","name":"Mill","port":2222,"status":"connected"})";
        const QByteArray recent =
            R"([{"modifiedAt":788918400.123,"size":20000,"url":"file:///jobs/my%20part.nc"},)"
            R"({"size":0,"url":"file:///jobs/b.gcode"}])";
        QCOMPARE(stored(u"selectedMachine"_s), machine);
        QCOMPARE(stored(u"recentFiles"_s), recent);

        Machine withModel = mill();
        withModel.model = u"Bench Mill"_s;
        persistence().setSelectedMachine(withModel);
        QCOMPARE(persistence().selectedMachine(), withModel);
        QVERIFY(stored(u"selectedMachine"_s).contains("\"model\":\"Bench Mill\""));
        persistence().setSelectedMachine(std::nullopt);
        QVERIFY(!rawStore()->contains(u"selectedMachine"_s));
    }

    // What cannot be read reads as nothing, stays as it was, and gives way to the next write.
    void unreadableItems_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        const auto row = [](const char* name, const char* json,
                            const QString& key = u"selectedMachine"_s) {
            QTest::newRow(name) << key << QVariant(QByteArray(json));
        };
        row("unknown status", R"({"name":"M","ipAddress":"1.2.3.4","port":1,"status":"offline"})");
        row("port too large", R"({"name":"M","ipAddress":"1.2.3.4","port":70000,"status":"busy"})");
        row("port fraction", R"({"name":"M","ipAddress":"1.2.3.4","port":1.5,"status":"busy"})");
        row("port as text", R"({"name":"M","ipAddress":"1.2.3.4","port":"1","status":"busy"})");
        row("missing name", R"({"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("model not text",
            R"({"name":"M","model":3,"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("not JSON", "{name:");
        QTest::newRow("not bytes") << u"selectedMachine"_s << QVariant(u"Mill"_s);
        row("recent files not JSON", "not json", u"recentFiles"_s);
        row("date as text", R"([{"machineID":"a","filePath":"/b","fileSize":1,"uploadedAt":"1"}])",
            u"uploads"_s);
        row("no machine", R"([{"filePath":"/b","fileSize":1,"uploadedAt":1}])", u"uploads"_s);
    }
    void unreadableItems() {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        rawStore()->setValue(key, stored);
        QVERIFY(!persistence().selectedMachine() && persistence().recentFiles().isEmpty() &&
                persistence().uploadRecords().isEmpty());
        QCOMPARE(rawStore()->value(key), stored);
        const QList<JobFile> next{{QUrl::fromLocalFile(u"/a.nc"_s), 1, std::nullopt}};
        persistence().setRecentFiles(next);
        QCOMPARE(persistence().recordUpload(record(7)), std::nullopt);
        QCOMPARE(persistence().recentFiles(), next);
        QCOMPARE(persistence().uploadRecords(), QList<UploadRecord>{record(7)});
    }

    void uploadHistoryKeepsTheFiftyNewest() {
        persistence().recordUpload(record(1));
        for (int n = 1; n <= 50; ++n)
            persistence().recordUpload(record(n));
        const QList<UploadRecord> records = persistence().uploadRecords();
        QCOMPARE(records.size(), 50);
        // The 51st record pushes the oldest out, even when it equals a newer one.
        QCOMPARE(records.first(), record(50));
        QCOMPARE(records.last(), record(1));

        const QByteArray newest =
            R"([{"filePath":"/jobs/50.nc","fileSize":150,"machineID":"192.168.1.40:2222",)"
            R"("uploadedAt":788918450},{)";
        QVERIFY(stored(u"uploads"_s).startsWith(newest));
    }

    // Processes that finish uploads together each add their records; none is lost.
    void concurrentProcessesLoseNoRecord() {
        const int processes = 5;
        std::vector<std::unique_ptr<QProcess>> writers;
        for (int p = 0; p < processes; ++p) {
            auto& writer = writers.emplace_back(std::make_unique<QProcess>());
            writer->start(QCoreApplication::applicationFilePath(),
                          {u"--record"_s, rawStore()->fileName(), QString::number(p * 10)});
        }
        QSet<UploadRecord> expected;
        for (int p = 0; p < processes; ++p) {
            QVERIFY(writers[p]->waitForFinished(30'000));
            QCOMPARE(writers[p]->readAllStandardError(), QByteArray());
            QCOMPARE(writers[p]->exitCode(), 0);
            for (int n = 0; n < 10; ++n)
                expected.insert(record(p * 10 + n));
        }
        const QList<UploadRecord> stored = persistence().uploadRecords();
        QCOMPARE(stored.size(), expected.size());
        QCOMPARE(QSet<UploadRecord>(stored.begin(), stored.end()), expected);
    }

    // What was stored stays, byte for byte, and the error says why nothing was added.
    void historyThatCannotBeSaved_data() {
        QTest::addColumn<Store>("store");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("locked") << Store::Locked << int(QLockFile::LockFailedError)
                                << u"The settings store %1 stayed locked by another program."_s;
        QTest::newRow("in a file") << Store::InAFile << int(QLockFile::UnknownError)
                                   << u"The lock file %1.write-lock could not be created."_s;
        QTest::newRow("random bytes")
            << Store::RandomBytes << int(QSettings::FormatError)
            << u"The settings store %1 is not in a format that can be read."_s;
        QTest::newRow("link to a folder")
            << Store::LinkToFolder << int(QSettings::AccessError)
            << u"The settings store %1 is not a regular file, so it is left as it is."_s;
        QTest::newRow("disk full") << Store::DiskFull << int(QSettings::AccessError)
                                   << u"The settings store %1 could not be read or written."_s;
        QTest::newRow("link to a file") << Store::LinkToFile << 0 << QString();
    }
    void historyThatCannotBeSaved() {
        QFETCH(Store, store);
        QFETCH(int, code);
        QFETCH(QString, message);
        const QTemporaryDir dir;
        const QString target = dir.filePath(u"target"_s);
        const QString path =
            dir.filePath(store == Store::InAFile ? u"target/store.ini"_s : u"store.ini"_s);
        const bool linked = store == Store::LinkToFolder || store == Store::LinkToFile;
        if (store == Store::InAFile || store == Store::RandomBytes)
            writeFile(dir, store == Store::InAFile ? u"target"_s : u"store.ini"_s, patterned(999));
        else if (store == Store::LinkToFolder)
            QVERIFY(QDir(dir.path()).mkdir(u"target"_s));
        else
            QCOMPARE(AppPersistence(settings::openStoreFile(linked ? target : path))
                         .recordUpload(record(1)),
                     std::nullopt);
#ifdef Q_OS_UNIX
        QVERIFY(!linked || QFile::link(target, path));
#else
        if (linked || store == Store::DiskFull)
            QSKIP("Needs symbolic links and a limit on the size of written files.");
#endif
        const auto contents = [&path] {
            QFile file(path);
            return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                              : QByteArray();
        };
        const QByteArray before = contents();

        AppPersistence history(settings::openStoreFile(path));
        history.setLockWait(std::chrono::milliseconds(10));
        QLockFile otherWriter(path + u".write-lock"_s);
        QVERIFY(store != Store::Locked || otherWriter.lock());
        std::optional<Error> error;
        {
#ifdef Q_OS_UNIX
            // The kernel refuses writes past the store's present size, as a full disk would.
            rlimit unlimited{};
            QVERIFY(getrlimit(RLIMIT_FSIZE, &unlimited) == 0);
            const auto restore = qScopeGuard([&] {
                setrlimit(RLIMIT_FSIZE, &unlimited);
                std::signal(SIGXFSZ, SIG_DFL);
            });
            if (store == Store::DiskFull) {
                std::signal(SIGXFSZ, SIG_IGN);
                const rlimit full{rlim_t(before.size()), unlimited.rlim_max};
                QVERIFY(setrlimit(RLIMIT_FSIZE, &full) == 0);
            }
#endif
            error = history.recordUpload(record(2));
        }
        if (message.isEmpty()) {
            QCOMPARE(error, std::nullopt);
            QVERIFY(QFileInfo(path).isSymLink());
            QCOMPARE(history.uploadRecords(), QList<UploadRecord>({record(2), record(1)}));
            return;
        }
        const PlatformError expected{PlatformError::Domain::File, code, message.arg(path)};
        QCOMPARE(error, std::optional(Error(expected)));
        QVERIFY(store != Store::LinkToFolder || QFileInfo(target).isDir());
        QCOMPARE(contents(), before);
    }

    // A store that QSettings' own INI format wrote reads the same, and the other way round.
    void storeFileIsQSettingsIni_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("JSON") << u"uploads"_s << QVariant(QByteArray(R"([{"a":"b, c;d=e\\"}])"));
        QTest::newRow("bytes") << u"mainWindowGeometry"_s
                               << QVariant(QByteArray::fromHex("0031ff7f0a5c20"));
        QTest::newRow("text") << u"installIdentifier"_s << QVariant(u" @x\tü\u202E\n\"; =,"_s);
        QTest::newRow("odd key") << u"group/odd key%"_s << QVariant(u"@"_s);
        QTest::newRow("General") << u"General/x"_s << QVariant(true);
    }
    void storeFileIsQSettingsIni() {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        const QString path = m_dir.filePath(u"qt.ini"_s);
        QFile::remove(path);
        QSettings(path, QSettings::IniFormat).setValue(key, value);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QVariant read = value.typeId() == QMetaType::Bool ? value.toString() : value;
        QCOMPARE(settings::parseIniText(file.readAll()), QSettings::SettingsMap({{key, read}}));
        file.close();
        writeFile(m_dir, u"qt.ini"_s, settings::iniText({{key, value}}));
        const QSettings qt(path, QSettings::IniFormat);
        QCOMPARE(qt.allKeys(), QStringList{key});
        QCOMPARE(qt.value(key), read);
    }

    void storeOverrideAndUpdateSwitch() {
        const QString file = m_dir.filePath(u"override.ini"_s);
        qputenv(settings::storeFileVariable, file.toUtf8());
        const std::unique_ptr<QSettings> store = openStandardStore();
        QCOMPARE(std::pair(store->fileName(), store->format()),
                 std::pair(file, settings::fileFormat()));
        // Only false, as a Boolean or as the text an INI file gives back, turns the checks off.
        QList<bool> enabled{settings::automaticUpdateChecks(*store)};
        for (const QVariant& value : {QVariant(false), QVariant(u"false"_s), QVariant(true),
                                      QVariant(0), QVariant(u"no"_s)}) {
            store->setValue(settings::automaticUpdateChecksKey, value);
            enabled << settings::automaticUpdateChecks(*store);
        }
        QCOMPARE(enabled, QList<bool>({true, false, false, true, true, true}));
    }

    // A name from the network stays on its line and cannot turn the text after it around.
    void displayNames() {
        const std::pair<const char16_t*, const char16_t*> names[] = {
            {u"Mill 2", u"Mill 2"},
            {u"Line\nfeed", u"Line\u240Afeed"},
            {u"Car\rriage\ttab", u"Car\u240Driage\u2409tab"},
            {u"x\u007Fy\u0085z\u2028", u"x\u2421y\uFFFDz\u2424"},
            {u"\u202Eevil", u"\u2068\u202Eevil\u2069"},
            {u"\u05DE\u05DB\u05D5\u05E0\u05D4 3", u"\u2068\u05DE\u05DB\u05D5\u05E0\u05D4 3\u2069"},
        };
        for (const auto& [announced, shown] : names)
            QCOMPARE(displayName(QString::fromUtf16(announced)), QString::fromUtf16(shown));
    }

    void byteCountsUseDecimalUnits() {
        const std::pair<qint64, const char*> cases[] = {
            {0, "0 bytes"},          {1, "1 byte"},
            {999, "999 bytes"},      {48'000, "48 kB"},
            {1'234'567, "1.2 MB"},   {4'700'000'000, "4.7 GB"},
            {220'000'000, "220 MB"}, {48'300'000'000, "48.3 GB"},
            {999'999, "1.0 MB"},     {std::numeric_limits<qint64>::max(), "9.2 EB"}};
        for (const auto& [bytes, text] : cases)
            QCOMPARE(byteCount(bytes, english), QString::fromLatin1(text));
    }

    void percentagesAreWholeAndClamped() {
        const std::pair<double, const char*> cases[] = {{0.5, "50%"},   {0, "0%"},
                                                        {1, "100%"},    {0.996, "100%"},
                                                        {0.254, "25%"}, {notANumber, "0%"}};
        for (const auto& [fraction, text] : cases)
            QCOMPARE(percentText(fraction, english), QString::fromLatin1(text));
    }

    void rateIsShownOnlyWhenItIsAUsableByteCount() {
        QCOMPARE(rateText(48'000.9, english), std::optional(u"48 kB/s"_s));
        QVERIFY(rateText(9.2e18, english).has_value());
        for (const double unusable : {0.0, -5.0, infinity, notANumber, 9223372036854775808.0})
            QCOMPARE(rateText(unusable, english), std::nullopt);
    }

    void timeLeftComesFromTheRemainingBytesAndTheRate() {
        using Phase = TransferProgress::Phase;
        const std::pair<TransferProgress, const char*> cases[] = {
            {{Phase::Uploading, 500, 1000, 100}, "About 5 s left"},
            {{Phase::Uploading, 0, 600'000, 1000}, "About 10 min left"},
            {{Phase::Uploading, 0, 4'000'000'000, 1'000'000}, "About 1 h 7 min left"},
            {{Phase::Uploading, 500, 1000, 0}, nullptr},
            {{Phase::Uploading, 1000, 1000, 100}, nullptr},
            {{Phase::Completed, 500, 1000, 100}, nullptr},
            {{Phase::Uploading, 0, 1000, infinity}, nullptr}};
        for (const auto& [progress, text] : cases)
            QCOMPARE(timeLeftText(progress),
                     text ? std::optional(QString::fromLatin1(text)) : std::nullopt);
    }
};

// Run with "--record STORE FIRST", the test adds ten records to STORE as one of several writers.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && arguments[1] == u"--record") {
        AppPersistence persistence(settings::openStoreFile(arguments[2]));
        for (int n = arguments[3].toInt(); n < arguments[3].toInt() + 10; ++n) {
            if (const std::optional<Error> error = persistence.recordUpload(record(n))) {
                qWarning("%s", qPrintable(error->description()));
                return 1;
            }
        }
        return 0;
    }
    RecordsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RecordsTest.moc"
