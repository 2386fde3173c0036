#include "cli/ProgressBar.h"

#include <QTest>

using namespace tarnwick;
using namespace tarnwick::cli;
using Phase = TransferProgress::Phase;

class ProgressBarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines_data() {
        QTest::addColumn<TransferProgress>("progress");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, TransferProgress progress, const char* line) {
            QTest::newRow(name) << progress << QString::fromUtf8(line);
        };
        row("preparing", {Phase::Preparing, 0, 2'000'000, 0},
            "[..............................]   0%  0 bytes of 2.0 MB  connecting");
        row("seconds left", {Phase::Uploading, 500'000, 2'000'000, 250'000},
            "[########......................]  25%  500.0 kB of 2.0 MB  250.0 kB/s  6 s left");
        row("minutes left", {Phase::Uploading, 1'000'000, 200'000'000, 1'000'000},
            "[..............................]   0%  1.0 MB of 200.0 MB  1.0 MB/s  3 min 19 s left");
        row("completed", {Phase::Completed, 2'000'000, 2'000'000, 0},
            "[##############################] 100%  2.0 MB of 2.0 MB  done");
    }
    void lines() {
        QFETCH(TransferProgress, progress);
        QFETCH(QString, line);
        QCOMPARE(ProgressBar::line(progress), line);
    }

    // A shorter line blanks out what is left of the longer one before it; the line ends once.
    void redrawsInPlaceAndEndsTheLineOnce() {
        QString text;
        QTextStream stream(&text);
        ProgressBar bar(stream);
        bar.finish();
        bar.show({Phase::Uploading, 500'000, 2'000'000, 250'000});
        bar.showChecking(420, 1000);
        bar.finish();
        bar.finish();
        const QString first = ProgressBar::line({Phase::Uploading, 500'000, 2'000'000, 250'000});
        QCOMPARE(text, u'\r' + first + u'\r' +
                           QStringLiteral("Checking the file… 42 %").leftJustified(first.size()) +
                           u'\n');
    }
};

QTEST_GUILESS_MAIN(ProgressBarTest)
#include "ProgressBarTest.moc"
