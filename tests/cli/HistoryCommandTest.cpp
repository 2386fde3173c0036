#include "CliRun.h"
#include "app/AppPersistence.h"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class HistoryCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void printsNewestFirstFilteredAndChangesNothing() {
        const Cli cli;
        const QDateTime now = QDateTime::currentDateTimeUtc().addMSecs(-1500);
        const QList<UploadRecord> records{
            {u"192.168.1.20:4000"_s, u"/jobs/c.nc"_s, 3000, now.addSecs(-3600)},
            {u"192.168.1.21:2222"_s, u"/jobs/b,c.nc"_s, 2000, now.addSecs(-7200)},
            {u"192.168.1.20:2222"_s, u"/jobs/a.nc"_s, 1000, now.addDays(-3)}};
        AppPersistence persistence(cli.store());
        for (qsizetype i = records.size() - 1; i >= 0; --i)
            QCOMPARE(persistence.recordUpload(records[i]), std::nullopt);
        const auto iso = [&](int i) { return records[i].uploadedAt.toString(Qt::ISODate); };
        const auto local = [&](int i) {
            return records[i].uploadedAt.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s);
        };
        const auto run = [&](const QString& arguments) {
            return cli.run(QString(u"history "_s + arguments).split(u' ', Qt::SkipEmptyParts))
                .all();
        };
        QFile file(cli.store()->fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray stored = file.readAll();

        QCOMPARE(run({}),
                 QStringList({u"0"_s,
                              local(0) + u"\t192.168.1.20:4000\t3000\t/jobs/c.nc\n"_s + local(1) +
                                  u"\t192.168.1.21:2222\t2000\t/jobs/b,c.nc\n"_s + local(2) +
                                  u"\t192.168.1.20:2222\t1000\t/jobs/a.nc\n"_s,
                              {}}));
        QCOMPARE(
            run(u"--json --machine 192.168.1.20"_s),
            QStringList(
                {u"0"_s,
                 uR"({"file":"/jobs/c.nc","machine":"192.168.1.20:4000","size":3000,"uploadedAt":"%1"}
{"file":"/jobs/a.nc","machine":"192.168.1.20:2222","size":1000,"uploadedAt":"%2"}
)"_s.arg(iso(0), iso(2)),
                 {}}));
        QCOMPARE(
            run(u"--csv --since 1d --machine 192.168.1.21:2222"_s),
            QStringList(
                {u"0"_s,
                 u"uploadedAt,machine,file,size\n%1,192.168.1.21:2222,\"/jobs/b,c.nc\",2000\n"_s
                     .arg(iso(1)),
                 {}}));
        QCOMPARE(run(u"--since 90m"_s).value(1).count(u'\n'), 1);
        QCOMPARE(
            run(u"--since 7x"_s),
            QStringList(
                {u"2"_s, {}, u"--since takes a duration such as 90s, 45m, 12h, 7d or 2w.\n"_s}));
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), stored);

        cli.store()->setValue(u"uploads"_s, QByteArray("[{\"damaged\""));
        QCOMPARE(run({}), QStringList({u"1"_s,
                                       {},
                                       u"The upload history in %1 could not be read.\n"_s.arg(
                                           QDir::toNativeSeparators(file.fileName()))}));
    }
};

QTEST_GUILESS_MAIN(HistoryCommandTest)
#include "HistoryCommandTest.moc"
