#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include <QTest>

#include <tuple>
#include <utility>

using namespace tarnwick;
using namespace tarnwick::cli;
using Phase = TransferProgress::Phase;

// What a person and a script read of an upload.
class OutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines() {
        const std::pair<TransferProgress, const char*> rows[] = {
            {{Phase::Preparing, 0, 2'000'000, 0},
             "[..............................]   0%  0 bytes of 2.0 MB  connecting"},
            {{Phase::Uploading, 500'000, 2'000'000, 250'000},
             "[########......................]  25%  500.0 kB of 2.0 MB  250.0 kB/s  6 s left"},
            {{Phase::Uploading, 1'000'000, 200'000'000, 1'000'000},
             "[..............................]   0%  1.0 MB of 200.0 MB  1.0 MB/s  3 min 19 s "
             "left"},
            {{Phase::Completed, 2'000'000, 2'000'000, 0},
             "[##############################] 100%  2.0 MB of 2.0 MB  done"},
        };
        for (const auto& [progress, line] : rows)
            QCOMPARE(ProgressBar::line(progress), QLatin1String(line));
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

    // The class follows the error's type and how far the upload had come, never its text.
    void exitClasses() {
        const PlatformError reset{PlatformError::Domain::Network, 1, QStringLiteral("reset")};
        const PlatformError unreadable{PlatformError::Domain::File, 1, QStringLiteral("gone")};
        const UploadReach before{false, false}, connected{true, false}, sending{true, true};
        const std::tuple<Error, UploadReach, const char*> rows[] = {
            {UploadError::invalidResponse({}), sending, "1 failed"},
            {MakeraPacketError::truncated(), sending, "1 failed"},
            {reset, sending, "1 failed"},
            {reset, connected, "3 unreachable"},
            {UploadError::timedOut(), before, "3 unreachable"},
            {UploadError::timedOut(), connected, "5 timeout"},
            {CancellationError{}, before, "6 cancelled"},
            {JobFileError::changedWhileSending(), sending, "8 file"},
            {unreadable, sending, "8 file"},
        };
        for (const auto& [error, reach, kind] : rows) {
            const ExitCode code = exitCodeFor(error, reach);
            QCOMPARE(QString::number(code) + u' ' + kindName(code), QLatin1String(kind));
        }
    }
};

QTEST_GUILESS_MAIN(OutputTest)
#include "OutputTest.moc"
