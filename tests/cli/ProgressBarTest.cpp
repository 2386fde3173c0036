#include "cli/ProgressBar.h"

#include <QTest>

using namespace tarnwick;
using namespace tarnwick::cli;

class ProgressBarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesShowPercentageBytesRateAndTimeLeft() {
        using Phase = TransferProgress::Phase;
        QCOMPARE(ProgressBar::line({Phase::Preparing, 0, 2'000'000, 0}),
                 QStringLiteral("[..............................]   0%  0 bytes of 2.0 MB  "
                                "connecting"));
        QCOMPARE(ProgressBar::line({Phase::Uploading, 500'000, 2'000'000, 250'000}),
                 QStringLiteral("[########......................]  25%  500.0 kB of 2.0 MB  "
                                "250.0 kB/s  6 s left"));
        QCOMPARE(ProgressBar::line({Phase::Uploading, 1'000'000, 200'000'000, 1'000'000}),
                 QStringLiteral("[..............................]   0%  1.0 MB of 200.0 MB  "
                                "1.0 MB/s  3 min 19 s left"));
        QCOMPARE(ProgressBar::line({Phase::Completed, 2'000'000, 2'000'000, 0}),
                 QStringLiteral("[##############################] 100%  2.0 MB of 2.0 MB  done"));
    }

    void redrawsInPlaceAndEndsTheLineOnce() {
        QString text;
        QTextStream stream(&text);
        ProgressBar bar(stream);
        bar.finish();
        QCOMPARE(text, QString());
        bar.show({TransferProgress::Phase::Uploading, 500'000, 2'000'000, 250'000});
        bar.show({TransferProgress::Phase::Completed, 2'000'000, 2'000'000, 0});
        bar.finish();
        bar.finish();
        const QString first =
            ProgressBar::line({TransferProgress::Phase::Uploading, 500'000, 2'000'000, 250'000});
        const QString last =
            ProgressBar::line({TransferProgress::Phase::Completed, 2'000'000, 2'000'000, 0});
        QVERIFY(last.size() < first.size());
        // The shorter second line blanks out what is left of the first.
        QCOMPARE(text, QLatin1Char('\r') + first + QLatin1Char('\r') +
                           last.leftJustified(first.size()) + QLatin1Char('\n'));
        QCOMPARE(text.count(QLatin1Char('\n')), 1);
    }
};

QTEST_GUILESS_MAIN(ProgressBarTest)
#include "ProgressBarTest.moc"
