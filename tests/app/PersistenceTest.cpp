#include "app/AppPersistence.h"
#include "app/StoredDate.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {

const QDateTime newYear2026 = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);

Machine mill() {
    return {QStringLiteral("Mill"), std::nullopt, QStringLiteral("192.168.1.40"), 2222,
            Machine::ConnectionStatus::Connected};
}

UploadRecord record(int n) {
    return {QStringLiteral("192.168.1.40:2222"), QStringLiteral("/jobs/%1.nc").arg(n), 100 + n,
            newYear2026.addSecs(n)};
}

QJsonValue storedDocument(QSettings& store, const QString& key) {
    store.sync();
    const QJsonDocument document = QJsonDocument::fromJson(store.value(key).toByteArray());
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

} // namespace

class PersistenceTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    AppPersistence persistence() { return AppPersistence(temporaryStore(m_dir)); }
    std::unique_ptr<QSettings> rawStore() { return temporaryStore(m_dir); }

private Q_SLOTS:
    void init() { rawStore()->clear(); }

    void datesAreSecondsSince2001() {
        QCOMPARE(toStoredDate(newYear2026).toDouble(), 788918400.0);
        QCOMPARE(fromStoredDate(QJsonValue(788918400.25)), newYear2026.addMSecs(250));
        QVERIFY(!fromStoredDate(QJsonValue(QStringLiteral("788918400"))));
    }

    void selectedMachineRoundTripsWithExactKeys() {
        persistence().setSelectedMachine(mill());
        QCOMPARE(persistence().selectedMachine(), mill());

        const QJsonObject stored =
            storedDocument(*rawStore(), QStringLiteral("selectedMachine")).toObject();
        QCOMPARE(stored, (QJsonObject{{QStringLiteral("name"), QStringLiteral("Mill")},
                                      {QStringLiteral("ipAddress"), QStringLiteral("192.168.1.40")},
                                      {QStringLiteral("port"), 2222},
                                      {QStringLiteral("status"), QStringLiteral("connected")}}));

        Machine withModel = mill();
        withModel.model = QStringLiteral("Bench Mill");
        persistence().setSelectedMachine(withModel);
        QCOMPARE(persistence().selectedMachine(), withModel);

        persistence().setSelectedMachine(std::nullopt);
        QVERIFY(!rawStore()->contains(QStringLiteral("selectedMachine")));
    }

    void unreadableMachinesReadAsNone_data() {
        QTest::addColumn<QVariant>("stored");
        const auto row = [](const char* name, const char* json) {
            QTest::newRow(name) << QVariant(QByteArray(json));
        };
        row("unknown status", R"({"name":"M","ipAddress":"1.2.3.4","port":1,"status":"offline"})");
        row("port too large", R"({"name":"M","ipAddress":"1.2.3.4","port":70000,"status":"busy"})");
        row("port as text", R"({"name":"M","ipAddress":"1.2.3.4","port":"1","status":"busy"})");
        row("missing name", R"({"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("model not text",
            R"({"name":"M","model":3,"ipAddress":"1.2.3.4","port":1,"status":"busy"})");
        row("not JSON", "{name:");
        QTest::newRow("not bytes") << QVariant(QStringLiteral("Mill"));
    }
    void unreadableMachinesReadAsNone() {
        QFETCH(QVariant, stored);
        rawStore()->setValue(QStringLiteral("selectedMachine"), stored);
        QVERIFY(!persistence().selectedMachine());
        // Reading leaves the stored item untouched.
        QCOMPARE(rawStore()->value(QStringLiteral("selectedMachine")), stored);
    }

    void recentFilesRoundTripWithFractionalDates() {
        const QList<JobFile> files{
            {QUrl::fromLocalFile(QStringLiteral("/jobs/my part.nc")), 20000,
             newYear2026.addMSecs(123)},
            {QUrl::fromLocalFile(QStringLiteral("/jobs/b.gcode")), 0, std::nullopt},
        };
        persistence().setRecentFiles(files);
        QCOMPARE(persistence().recentFiles(), files);

        const QJsonArray stored =
            storedDocument(*rawStore(), QStringLiteral("recentFiles")).toArray();
        QCOMPARE(stored.at(0).toObject().value(QStringLiteral("url")).toString(),
                 QStringLiteral("file:///jobs/my%20part.nc"));
        QCOMPARE(stored.at(0).toObject().value(QStringLiteral("modifiedAt")).toDouble(),
                 788918400.123);
        QVERIFY(!stored.at(1).toObject().contains(QStringLiteral("modifiedAt")));
    }

    void unreadableListsAreReplacedByTheNextWrite() {
        rawStore()->setValue(QStringLiteral("recentFiles"), QByteArray("not json"));
        rawStore()->setValue(QStringLiteral("uploads"),
                             QByteArray(R"([{"machineID":"a","filePath":"/b","fileSize":1}])"));
        QVERIFY(persistence().recentFiles().isEmpty());
        QVERIFY(persistence().uploadRecords().isEmpty());
        const QList<JobFile> next{{QUrl::fromLocalFile(QStringLiteral("/a.nc")), 1, std::nullopt}};
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

        const QJsonObject newest =
            storedDocument(*rawStore(), QStringLiteral("uploads")).toArray().at(0).toObject();
        QCOMPARE(newest.keys(),
                 (QStringList{QStringLiteral("filePath"), QStringLiteral("fileSize"),
                              QStringLiteral("machineID"), QStringLiteral("uploadedAt")}));
        QCOMPARE(newest.value(QStringLiteral("uploadedAt")).toDouble(), 788918450.0);
    }

    void writesFromAnotherStoreAreSeen() {
        AppPersistence reader = persistence();
        QVERIFY(reader.uploadRecords().isEmpty());
        persistence().recordUpload(record(3));
        QCOMPARE(reader.uploadRecords(), QList<UploadRecord>{record(3)});
    }
};

QTEST_GUILESS_MAIN(PersistenceTest)
#include "PersistenceTest.moc"
