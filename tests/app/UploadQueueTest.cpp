#include "app/UploadQueue.h"

#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "transfer/MakeraFileUploader.h"

#include <QTest>

#include <memory>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;
using State = QueuedUpload::State;

namespace {

// The state in a word, in the order the states are declared.
QString word(State state) {
    static const char* const words[] = {"waiting",    "running", "running",   "sent",
                                        "unrecorded", "failed",  "cancelled", "refused"};
    return QString::fromLatin1(words[int(state)]);
}

// "m0: f0 f1 | m1: f0", one group per machine in the machines' order.
QString perMachine(const QList<QStringList>& files) {
    QStringList groups;
    for (qsizetype machine = 0; machine < files.size(); ++machine)
        groups << u"m%1:%2"_s.arg(machine).arg(
            files.at(machine).isEmpty() ? QString() : u" "_s + files.at(machine).join(u' '));
    return groups.join(u" | "_s);
}

} // namespace

// The queue's rules against simulated machines, through the uploader the app uses: what each
// machine received and stored, in which order, what it was told, and what the history kept.
class UploadQueueTest : public QObject {
    Q_OBJECT

    const QDateTime m_now = QDateTime(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);

private Q_SLOTS:
    void rules_data() {
        QTest::addColumn<int>("fileCount");
        // The simulator's fault flags, one entry per machine.
        QTest::addColumn<QStringList>("machines");
        // Pairs ("file@machine") already in the history a minute ago.
        QTest::addColumn<QStringList>("recorded");
        QTest::addColumn<bool>("duplicateConfirmed");
        // "wait ROW sending" waits until the machine has taken part of the pair's file, "wait ROW
        // ended" until the pair ended; "cancel ROW", "cancelAll", "retry ROW" act.
        QTest::addColumn<QStringList>("script");
        QTest::addColumn<QStringList>("states");
        // The files each machine began to receive, in order.
        QTest::addColumn<QString>("sentTo");
        // The most pairs that were running at one time.
        QTest::addColumn<int>("parallel");
        QTest::addColumn<QString>("stored");
        // The machines that were told that an upload stops.
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<QString>("summary");

        const QStringList none, idle{QString()}, slow{u"--latency-ms 40"_s};
        const QString closed =
            u"The machine returned an invalid response: The machine closed the connection."_s;
        QTest::newRow("one file at a time per machine, in order; the machines in parallel")
            << 2 << QStringList{QString(), QString()} << none << false << none
            << QStringList{u"sent"_s, u"sent"_s, u"sent"_s, u"sent"_s} << u"m0: f0 f1 | m1: f0 f1"_s
            << 2 << u"m0: f0 f1 | m1: f0 f1"_s << none << u"4 of 4 sent"_s;
        QTest::newRow("a failing machine does not stop the others")
            << 2 << QStringList{u"--close-after 1"_s, QString()} << none << false << none
            << QStringList{u"failed"_s, u"sent"_s, u"failed"_s, u"sent"_s}
            << u"m0: f0 f1 | m1: f0 f1"_s << 2 << u"m0: | m1: f0 f1"_s << none
            << u"2 of 4 sent; 2 failed: Mill 0, f0.nc: %1; Mill 0, f1.nc: %1"_s.arg(closed);
        QTest::newRow("cancelling a sending pair tells its machine, which takes the next file")
            << 2 << slow << none << false << QStringList{u"wait 0 sending"_s, u"cancel 0"_s}
            << QStringList{u"cancelled"_s, u"sent"_s} << u"m0: f0 f1"_s << 1 << u"m0: f1"_s
            << QStringList{u"m0"_s} << u"1 of 2 sent; 1 cancelled"_s;
        QTest::newRow("cancelling a waiting pair tells no machine")
            << 2 << slow << none << false << QStringList{u"cancel 1"_s}
            << QStringList{u"sent"_s, u"cancelled"_s} << u"m0: f0"_s << 1 << u"m0: f0"_s << none
            << u"1 of 2 sent; 1 cancelled"_s;
        QTest::newRow("cancel all tells every machine still sending")
            << 2 << QStringList{slow.first(), slow.first()} << none << false
            << QStringList{u"wait 0 sending"_s, u"wait 1 sending"_s, u"cancelAll"_s}
            << QStringList{u"cancelled"_s, u"cancelled"_s, u"cancelled"_s, u"cancelled"_s}
            << u"m0: f0 | m1: f0"_s << 2 << u"m0: | m1:"_s << QStringList{u"m0"_s, u"m1"_s}
            << u"0 of 4 sent; 4 cancelled"_s;
        QTest::newRow("a retried pair goes after the files still waiting for its machine")
            << 3 << slow << none << false
            << QStringList{u"wait 0 sending"_s, u"cancel 0"_s, u"wait 0 ended"_s, u"retry 0"_s}
            << QStringList{u"sent"_s, u"sent"_s, u"sent"_s} << u"m0: f0 f1 f2 f0"_s << 1
            << u"m0: f0 f1 f2"_s << QStringList{u"m0"_s} << u"3 of 3 sent"_s;
        QTest::newRow("a recent duplicate is refused for its pair alone")
            << 1 << QStringList{QString(), QString()} << QStringList{u"0@0"_s} << false << none
            << QStringList{u"refused"_s, u"sent"_s} << u"m0: | m1: f0"_s << 2 << u"m0: | m1: f0"_s
            << none << u"1 of 2 sent; 1 not sent as recent duplicates"_s;
        QTest::newRow("retrying a refused duplicate sends it")
            << 1 << idle << QStringList{u"0@0"_s} << false
            << QStringList{u"wait 0 ended"_s, u"retry 0"_s} << QStringList{u"sent"_s} << u"m0: f0"_s
            << 1 << u"m0: f0"_s << none << u"1 of 1 sent"_s;
        QTest::newRow("confirmed duplicates are sent")
            << 1 << idle << QStringList{u"0@0"_s} << true << none << QStringList{u"sent"_s}
            << u"m0: f0"_s << 1 << u"m0: f0"_s << none << u"1 of 1 sent"_s;
    }

    void rules() {
        QFETCH(int, fileCount);
        QFETCH(QStringList, machines);
        QFETCH(QStringList, recorded);
        QFETCH(bool, duplicateConfirmed);
        QFETCH(QStringList, script);

        QTemporaryDir dir;
        QList<JobFile> files;
        QList<QByteArray> contents;
        for (int i = 0; i < fileCount; ++i) {
            contents << patterned(64 * 1024, i + 1);
            files << JobFile::fromUrl(writeFile(dir, u"f%1.nc"_s.arg(i), contents.last())).value();
        }
        std::vector<std::unique_ptr<SimProcess>> sims;
        QList<Machine> targets;
        for (const QString& flags : std::as_const(machines)) {
            sims.push_back(std::make_unique<SimProcess>(
                QString(u"--ftype x "_s + flags).split(u' ', Qt::SkipEmptyParts)));
            const quint16 port = sims.back()->waitUntilListening();
            QVERIFY(port != 0);
            targets << Machine{u"Mill %1"_s.arg(targets.size()), std::nullopt, u"127.0.0.1"_s, port,
                               Machine::ConnectionStatus::Connected};
        }

        AppPersistence history(temporaryStore(dir));
        QStringList expectedHistory;
        for (const QString& pair : std::as_const(recorded)) {
            const JobFile& file = files.at(pair.section(u'@', 0, 0).toInt());
            const Machine& machine = targets.at(pair.section(u'@', 1).toInt());
            QVERIFY(!history.recordUpload(
                UploadRecord{machine.id(), file.id(), file.size, m_now.addSecs(-60)}));
            expectedHistory << machine.id() + u' ' + file.id();
        }

        UploadQueue queue(history, MakeraFileUploader::factory());
        queue.setClock([this] { return m_now; });
        QList<QStringList> sentTo(targets.size());
        QList<State> last;
        int parallel = 0;
        connect(&queue, &UploadQueue::pairsReset, this,
                [&] { last = QList<State>(queue.pairs().size(), State::Waiting); });
        connect(&queue, &UploadQueue::pairChanged, this, [&](qsizetype row) {
            const QueuedUpload& pair = queue.pairs().at(row);
            if (pair.state == State::Sending && last.at(row) != State::Sending)
                sentTo[targets.indexOf(pair.machine)] << u"f%1"_s.arg(files.indexOf(pair.file));
            last[row] = pair.state;
            parallel = std::max(
                parallel, int(std::count_if(queue.pairs().cbegin(), queue.pairs().cend(),
                                            [](const QueuedUpload& p) { return p.isRunning(); })));
        });

        queue.start(files, targets, duplicateConfirmed);
        for (const QString& step : std::as_const(script)) {
            const QStringList words = step.split(u' ');
            const int row = words.value(1).toInt();
            if (words.first() == u"wait"_s && words.at(2) == u"sending"_s)
                QTRY_VERIFY_WITH_TIMEOUT(queue.pairs().at(row).state == State::Sending &&
                                             queue.pairs().at(row).progress->bytesSent > 0,
                                         10000);
            else if (words.first() == u"wait"_s)
                QTRY_VERIFY_WITH_TIMEOUT(queue.pairs().at(row).hasEnded(), 10000);
            else if (words.first() == u"cancel"_s)
                queue.cancel(row);
            else if (words.first() == u"cancelAll"_s)
                queue.cancelAll();
            else if (words.first() == u"retry"_s)
                queue.retry(row);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!queue.isRunning(), 20000);

        QStringList states;
        for (const QueuedUpload& pair : queue.pairs()) {
            states << word(pair.state);
            if (pair.isSent())
                expectedHistory << pair.machine.id() + u' ' + pair.file.id();
        }
        QTEST(states, "states");
        QTEST(perMachine(sentTo), "sentTo");
        QTEST(parallel, "parallel");
        QTEST(queue.summary(), "summary");

        QList<QStringList> stored;
        for (qsizetype m = 0; m < targets.size(); ++m) {
            const SimProcess& sim = *sims.at(m);
            QStringList names = sim.storedNames();
            for (QString& name : names) {
                const qsizetype file = name.mid(1, name.indexOf(u'.') - 1).toInt();
                QCOMPARE(sim.stored(name), contents.value(file));
                name.chop(3);
            }
            stored << names;
        }
        QTEST(perMachine(stored), "stored");
        // The cancel packet may reach the simulator's log a moment after the queue ended.
        const auto toldNow = [&] {
            QStringList told;
            for (qsizetype m = 0; m < targets.size(); ++m) {
                if (sims.at(m)->loggedTypes().contains(u"fileCancel"_s))
                    told << u"m%1"_s.arg(m);
            }
            return told;
        };
        QFETCH(QStringList, told);
        QTRY_COMPARE(toldNow(), told);

        // Read as the next launch does: a record for each pair sent, beside the earlier ones.
        QStringList records;
        for (const UploadRecord& record : AppPersistence(temporaryStore(dir)).uploadRecords())
            records << record.machineID + u' ' + record.filePath;
        records.sort();
        expectedHistory.sort();
        QCOMPARE(records, expectedHistory);
    }
};

QTEST_GUILESS_MAIN(UploadQueueTest)
#include "UploadQueueTest.moc"
