#include "app/AppPersistence.h"
#include "app/SettingsStore.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QLockFile>
#include <QProcess>
#include <QTest>

using namespace tarnwick;
using namespace Qt::StringLiterals;
using namespace tarnwick::testing;

namespace {

const QDateTime newYear2026 = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);

Machine mill() {
    return {u"Mill"_s, std::nullopt, u"192.168.1.40"_s, 2222, Machine::ConnectionStatus::Connected};
}

UploadRecord record(int n) {
    return {u"192.168.1.40:2222"_s, u"/jobs/%1.nc"_s.arg(n), 100 + n, newYear2026.addSecs(n)};
}

} // namespace

class PersistenceTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    AppPersistence persistence() { return AppPersistence(temporaryStore(m_dir)); }
    std::unique_ptr<QSettings> rawStore() { return temporaryStore(m_dir); }
    QByteArray stored(const QString& key) { return rawStore()->value(key).toByteArray(); }

private Q_SLOTS:
    void init() { rawStore()->clear(); }

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

    void unreadableMachinesReadAsNone_data() {
        QTest::addColumn<QVariant>("stored");
        const auto row = [](const char* name, const char* json) {
            QTest::newRow(name) << QVariant(QByteArray(json));
        };
        row("unknown status", R"({"name":"M","ipAddress":"1.2.3.4","port":1,"status":"offline"})");
        row("port too large", R"({"name":"M","ipAddress":"1.2.3.4","port":70000,"status":"busy"})");
        row("port fraction", R"({"name":"M","ipAddress":"1.2.3.4","port":1.5,"status":"busy"})");
        row("port as text", R"({"name":"M","ipAddress":"1.2.3.4","port":"1","status":"busy"})");
        row("missing name", R"({"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("model not text",
            R"({"name":"M","model":3,"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("not JSON", "{name:");
        QTest::newRow("not bytes") << QVariant(u"Mill"_s);
    }
    void unreadableMachinesReadAsNone() {
        QFETCH(QVariant, stored);
        rawStore()->setValue(u"selectedMachine"_s, stored);
        QVERIFY(!persistence().selectedMachine());
        // Reading leaves the stored item untouched.
        QCOMPARE(rawStore()->value(u"selectedMachine"_s), stored);
    }

    void unreadableListsAreReplacedByTheNextWrite() {
        rawStore()->setValue(u"recentFiles"_s, QByteArray("not json"));
        // A date is a number, never its text.
        rawStore()->setValue(u"uploads"_s, QByteArray(R"([{"machineID":"a","filePath":"/b",)"
                                                      R"("fileSize":1,"uploadedAt":"1"}])"));
        QVERIFY(persistence().recentFiles().isEmpty());
        QVERIFY(persistence().uploadRecords().isEmpty());
        const QList<JobFile> next{{QUrl::fromLocalFile(u"/a.nc"_s), 1, std::nullopt}};
        persistence().setRecentFiles(next);
        persistence().recordUpload(record(7));
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

    // What was stored stays, and the error says why nothing was added.
    void historyThatCannotBeSaved() {
        QVERIFY(QDir(m_dir.path()).mkpath(u"folder.ini"_s));
        writeFile(m_dir, u"file"_s, "not a folder");
        persistence().recordUpload(record(1));
        const struct {
            const char* store;
            bool locked;
            int code;
            const char* message;
        } rows[] = {
            {"folder.ini", false, QSettings::AccessError,
             "The settings store %1 could not be read or written."},
            {"store.ini", true, QLockFile::LockFailedError,
             "The settings store %1 stayed locked by another program."},
            {"file/store.ini", false, QLockFile::UnknownError,
             "The lock file %1.write-lock could not be created."},
        };
        for (const auto& row : rows) {
            const QString path = m_dir.filePath(QLatin1String(row.store));
            AppPersistence history(std::make_unique<QSettings>(path, QSettings::IniFormat));
            history.setLockWait(std::chrono::milliseconds(10));
            QLockFile otherWriter(path + u".write-lock"_s);
            QVERIFY(!row.locked || otherWriter.lock());
            const PlatformError expected{PlatformError::Domain::File, row.code,
                                         QString::fromUtf8(row.message).arg(path)};
            QCOMPARE(history.recordUpload(record(2)), std::optional(Error(expected)));
            QCOMPARE(history.uploadRecords(),
                     row.locked ? QList<UploadRecord>{record(1)} : QList<UploadRecord>());
        }
    }

    void storeOverrideAndUpdateSwitch() {
        const QString file = m_dir.filePath(u"override.ini"_s);
        qputenv(settings::storeFileVariable, file.toUtf8());
        const std::unique_ptr<QSettings> store = openStandardStore();
        QCOMPARE(std::pair(store->fileName(), store->format()),
                 std::pair(file, QSettings::IniFormat));
        // Only false, as a Boolean or as the text an INI file gives back, turns the checks off.
        QList<bool> enabled{settings::automaticUpdateChecks(*store)};
        for (const QVariant& value : {QVariant(false), QVariant(u"false"_s), QVariant(true),
                                      QVariant(0), QVariant(u"no"_s)}) {
            store->setValue(settings::automaticUpdateChecksKey, value);
            enabled << settings::automaticUpdateChecks(*store);
        }
        QCOMPARE(enabled, QList<bool>({true, false, false, true, true, true}));
    }
};

// Run with "--record STORE FIRST", the test adds ten records to STORE as one of several writers.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && arguments[1] == u"--record") {
        AppPersistence persistence(std::make_unique<QSettings>(arguments[2], QSettings::IniFormat));
        for (int n = arguments[3].toInt(); n < arguments[3].toInt() + 10; ++n) {
            if (const std::optional<Error> error = persistence.recordUpload(record(n))) {
                qWarning("%s", qPrintable(error->description()));
                return 1;
            }
        }
        return 0;
    }
    PersistenceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PersistenceTest.moc"
