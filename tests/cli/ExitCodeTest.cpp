#include "cli/ExitCode.h"

#include <QTest>

using namespace tarnwick;
using namespace tarnwick::cli;

// What a script reads of each failure: the class follows the error's type and how far the
// upload had come, never its text.
class ExitCodeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void classes_data() {
        QTest::addColumn<Error>("error");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("transferring");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("kind");
        const PlatformError reset{PlatformError::Domain::Network, 1, QStringLiteral("reset")};
        const PlatformError unreadable{PlatformError::Domain::File, 1, QStringLiteral("gone")};
        const auto row = [](const char* name, Error error, bool connected, bool transferring,
                            int code, const char* kind) {
            QTest::newRow(name) << error << connected << transferring << code
                                << QString::fromLatin1(kind);
        };
        row("invalid response", UploadError::invalidResponse({}), true, true, 1, "failed");
        row("packet error", MakeraPacketError::truncated(), true, true, 1, "failed");
        row("reset while transferring", reset, true, true, 1, "failed");
        row("bad address", DiscoveryPacketError::InvalidAddress, false, false, 2, "usage");
        row("reset before the transfer", reset, true, false, 3, "unreachable");
        row("connect time-out", UploadError::timedOut(), false, false, 3, "unreachable");
        row("machine's cancel", UploadError::rejected({}), true, true, 4, "refused");
        row("silent machine", UploadError::timedOut(), true, false, 5, "timeout");
        row("user's cancel", UploadError::cancelled(), true, true, 6, "cancelled");
        row("owner's cancel", CancellationError{}, false, false, 6, "cancelled");
        row("file changed", JobFileError::changedWhileSending(), true, true, 8, "file");
        row("file unreadable", unreadable, true, true, 8, "file");
    }
    void classes() {
        QFETCH(Error, error);
        QFETCH(bool, connected);
        QFETCH(bool, transferring);
        QFETCH(int, code);
        QFETCH(QString, kind);
        const ExitCode actual = exitCodeFor(error, {connected, transferring});
        QCOMPARE(int(actual), code);
        QCOMPARE(kindName(actual), kind);
    }
};

QTEST_GUILESS_MAIN(ExitCodeTest)
#include "ExitCodeTest.moc"
