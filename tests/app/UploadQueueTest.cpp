#include "app/UploadQueue.h"

#include "support/ModelHarness.h"

#include <QSet>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;
using State = QueuedUpload::State;

namespace {

QString word(State state) {
    switch (state) {
    case State::Waiting:
        return u"waiting"_s;
    case State::Checking:
    case State::Sending:
        return u"running"_s;
    case State::Sent:
        return u"sent"_s;
    case State::NotRecorded:
        return u"unrecorded"_s;
    case State::Failed:
        return u"failed"_s;
    case State::Cancelled:
        return u"cancelled"_s;
    case State::DuplicateRefused:
        return u"refused"_s;
    }
    return {};
}

// The history in an order of its own: pairs on different machines end in any order.
QStringList sorted(const QList<UploadRecord>& records) {
    QStringList texts;
    for (const UploadRecord& record : records)
        texts << u"%1 %2 %3"_s.arg(record.machineID, record.filePath,
                                   record.uploadedAt.toString(Qt::ISODate));
    texts.sort();
    return texts;
}

} // namespace

class UploadQueueTest : public QObject {
    Q_OBJECT

    const QDateTime m_now = QDateTime(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);

private Q_SLOTS:
    void rules_data() {
        QTest::addColumn<int>("fileCount");
        QTest::addColumn<int>("machineCount");
        // Pairs ("file@machine") already in the history a moment ago.
        QTest::addColumn<QStringList>("recorded");
        QTest::addColumn<bool>("duplicateConfirmed");
        // "ok N" / "fail N": the Nth uploader made succeeds or times out; "cancel ROW",
        // "cancelAll", "retry ROW" act on the queue.
        QTest::addColumn<QStringList>("script");
        // The uploads as the uploaders were made, "file@machine".
        QTest::addColumn<QStringList>("started");
        QTest::addColumn<QStringList>("states");
        // The uploaders that were told to stop.
        QTest::addColumn<QList<int>>("told");
        QTest::addColumn<QString>("summary");

        const QStringList none;
        QTest::newRow("one file at a time per machine, machines in parallel")
            << 2 << 2 << none << false << QStringList{u"ok 1"_s, u"ok 0"_s, u"ok 2"_s, u"ok 3"_s}
            << QStringList{u"0@0"_s, u"0@1"_s, u"1@1"_s, u"1@0"_s}
            << QStringList{u"sent"_s, u"sent"_s, u"sent"_s, u"sent"_s} << QList<int>{}
            << u"4 of 4 sent"_s;
        QTest::newRow("a failure does not stop the others")
            << 2 << 2 << none << false << QStringList{u"fail 0"_s, u"ok 1"_s, u"ok 2"_s, u"ok 3"_s}
            << QStringList{u"0@0"_s, u"0@1"_s, u"1@0"_s, u"1@1"_s}
            << QStringList{u"failed"_s, u"sent"_s, u"sent"_s, u"sent"_s} << QList<int>{}
            << u"3 of 4 sent; 1 failed: Mill 0, f0.nc: %1"_s;
        QTest::newRow("retry sends the failed pair again")
            << 1 << 2 << none << false << QStringList{u"fail 0"_s, u"ok 1"_s, u"retry 0"_s}
            << QStringList{u"0@0"_s, u"0@1"_s, u"0@0"_s} << QStringList{u"running"_s, u"sent"_s}
            << QList<int>{} << u"1 of 2 sent"_s;
        QTest::newRow("a retry waits behind the files still waiting for its machine")
            << 3 << 1 << none << false << QStringList{u"fail 0"_s, u"retry 0"_s, u"ok 1"_s}
            << QStringList{u"0@0"_s, u"1@0"_s, u"2@0"_s}
            << QStringList{u"waiting"_s, u"sent"_s, u"running"_s} << QList<int>{}
            << u"1 of 3 sent"_s;
        QTest::newRow("cancelling the running pair starts the machine's next")
            << 2 << 1 << none << false << QStringList{u"cancel 0"_s, u"ok 1"_s}
            << QStringList{u"0@0"_s, u"1@0"_s} << QStringList{u"cancelled"_s, u"sent"_s}
            << QList<int>{0} << u"1 of 2 sent; 1 cancelled"_s;
        QTest::newRow("cancelling a waiting pair tells no machine")
            << 2 << 1 << none << false << QStringList{u"cancel 1"_s, u"ok 0"_s}
            << QStringList{u"0@0"_s} << QStringList{u"sent"_s, u"cancelled"_s} << QList<int>{}
            << u"1 of 2 sent; 1 cancelled"_s;
        QTest::newRow("cancel all tells every machine still sending")
            << 2 << 2 << none << false << QStringList{u"ok 0"_s, u"cancelAll"_s}
            << QStringList{u"0@0"_s, u"0@1"_s, u"1@0"_s}
            << QStringList{u"sent"_s, u"cancelled"_s, u"cancelled"_s, u"cancelled"_s}
            << QList<int>{1, 2} << u"1 of 4 sent; 3 cancelled"_s;
        QTest::newRow("a recent duplicate is refused for its pair alone")
            << 1 << 2 << QStringList{u"0@0"_s} << false << QStringList{u"ok 0"_s}
            << QStringList{u"0@1"_s} << QStringList{u"refused"_s, u"sent"_s} << QList<int>{}
            << u"1 of 2 sent; 1 not sent as recent duplicates"_s;
        QTest::newRow("confirmed duplicates are sent")
            << 1 << 2 << QStringList{u"0@0"_s} << true << QStringList{u"ok 0"_s, u"ok 1"_s}
            << QStringList{u"0@0"_s, u"0@1"_s} << QStringList{u"sent"_s, u"sent"_s} << QList<int>{}
            << u"2 of 2 sent"_s;
    }

    void rules() {
        QFETCH(int, fileCount);
        QFETCH(int, machineCount);
        QFETCH(QStringList, recorded);
        QFETCH(bool, duplicateConfirmed);
        QFETCH(QStringList, script);
        QFETCH(QStringList, started);
        QFETCH(QStringList, states);
        QFETCH(QList<int>, told);
        QFETCH(QString, summary);

        ModelHarness h;
        QList<JobFile> files;
        for (int i = 0; i < fileCount; ++i)
            files << h.jobFile(u"f%1.nc"_s.arg(i));
        QList<Machine> machines;
        for (int i = 0; i < machineCount; ++i)
            machines << ModelHarness::machine(u"Mill %1"_s.arg(i), u"127.0.0.1"_s, 1000 + i);
        const auto pairName = [&](const JobFile& file, const Machine& machine) {
            return u"%1@%2"_s.arg(files.indexOf(file)).arg(machines.indexOf(machine));
        };
        AppPersistence history(temporaryStore(h.dir));
        QList<UploadRecord> expectedHistory;
        for (const QString& pair : recorded) {
            const JobFile& file = files.at(pair.section(u'@', 0, 0).toInt());
            const Machine& machine = machines.at(pair.section(u'@', 1).toInt());
            const UploadRecord record{machine.id(), file.id(), file.size, m_now.addSecs(-60)};
            QVERIFY(!history.recordUpload(record));
            expectedHistory << record;
        }

        UploadQueue queue(history, h.uploaders.factory());
        queue.setClock([this] { return m_now; });
        QStringList made;
        const auto noteMade = [&] {
            for (qsizetype i = made.size(); i < h.uploaders.made.size(); ++i)
                made << pairName(*h.uploaders.made.at(i)->file, *h.uploaders.made.at(i)->machine);
        };
        QSet<int> stopped;
        const auto stopTold = [&] {
            for (int i = 0; i < h.uploaders.made.size(); ++i) {
                FakeUploader* uploader = h.uploaders.made.at(i);
                if (uploader && uploader->cancelCalls > 0 && !stopped.contains(i)) {
                    stopped.insert(i);
                    Q_EMIT uploader->failed(UploadError::cancelled());
                }
            }
        };
        queue.start(files, machines, duplicateConfirmed);
        QTRY_COMPARE(queue.pairs().first().state == State::Waiting, false);
        noteMade();

        for (const QString& step : script) {
            const QString action = step.section(u' ', 0, 0);
            const int number = step.section(u' ', 1).toInt();
            if (action == u"ok"_s || action == u"fail"_s) {
                FakeUploader* uploader = h.uploaders.made.at(number);
                const qsizetype row = files.indexOf(*uploader->file) * machineCount +
                                      machines.indexOf(*uploader->machine);
                if (action == u"ok"_s) {
                    Q_EMIT uploader->progress({TransferProgress::Phase::Completed, 1000, 1000, 0});
                    Q_EMIT uploader->finished();
                    expectedHistory
                        << UploadRecord{uploader->machine->id(), uploader->file->id(), 1000, m_now};
                } else {
                    Q_EMIT uploader->failed(UploadError::timedOut());
                }
                QTRY_VERIFY(queue.pairs().at(row).hasEnded());
            } else if (action == u"cancel"_s) {
                queue.cancel(number);
            } else if (action == u"cancelAll"_s) {
                queue.cancelAll();
            } else if (action == u"retry"_s) {
                queue.retry(number);
            }
            stopTold();
            noteMade();
        }

        QCOMPARE(made, started);
        QStringList actual;
        for (const QueuedUpload& pair : queue.pairs())
            actual << word(pair.state);
        QCOMPARE(actual, states);
        QCOMPARE(QList<int>(stopped.cbegin(), stopped.cend()).size(), told.size());
        for (int i : told)
            QVERIFY(stopped.contains(i));
        QCOMPARE(queue.isRunning(), states.contains(u"running"_s) || states.contains(u"waiting"_s));
        if (!queue.isRunning())
            QCOMPARE(queue.summary(),
                     summary.contains(u"%1"_s)
                         ? summary.arg(Error(UploadError::timedOut()).description())
                         : summary);
        // Read as the next launch does: the records were written through the store's own opener.
        QCOMPARE(sorted(AppPersistence(temporaryStore(h.dir)).uploadRecords()),
                 sorted(expectedHistory));
    }
};

QTEST_GUILESS_MAIN(UploadQueueTest)
#include "UploadQueueTest.moc"
