#include "ui/AboutView.h"
#include "ui/Formatting.h"
#include "ui/ManualEntryRules.h"
#include "ui/SettingsView.h"
#include "ui/UpdateAlertContent.h"

#include <QTest>

#include <limits>

using namespace tarnwick;
using namespace tarnwick::ui;

class TextTest : public QObject {
    Q_OBJECT

    const QLocale english{QLocale::English, QLocale::UnitedStates};

private Q_SLOTS:
    void byteCountsUseDecimalUnits() {
        QCOMPARE(byteCount(0, english), QStringLiteral("0 bytes"));
        QCOMPARE(byteCount(1, english), QStringLiteral("1 byte"));
        QCOMPARE(byteCount(999, english), QStringLiteral("999 bytes"));
        QCOMPARE(byteCount(48'000, english), QStringLiteral("48 kB"));
        QCOMPARE(byteCount(1'234'567, english), QStringLiteral("1.2 MB"));
        QCOMPARE(byteCount(4'700'000'000, english), QStringLiteral("4.7 GB"));
        QCOMPARE(byteCount(220'000'000, english), QStringLiteral("220 MB"));
        QCOMPARE(byteCount(48'300'000'000, english), QStringLiteral("48.3 GB"));
        QCOMPARE(byteCount(999'999, english), QStringLiteral("1.0 MB"));
        QCOMPARE(byteCount(std::numeric_limits<qint64>::max(), english), QStringLiteral("9.2 EB"));
    }

    void percentagesAreWholeAndClamped() {
        QCOMPARE(percentText(0.5, english), QStringLiteral("50%"));
        QCOMPARE(percentText(0, english), QStringLiteral("0%"));
        QCOMPARE(percentText(1, english), QStringLiteral("100%"));
        QCOMPARE(percentText(0.996, english), QStringLiteral("100%"));
        QCOMPARE(percentText(0.254, english), QStringLiteral("25%"));
        QCOMPARE(percentText(std::numeric_limits<double>::quiet_NaN(), english),
                 QStringLiteral("0%"));
    }

    void rateIsShownOnlyWhenItIsAUsableByteCount() {
        QCOMPARE(rateText(48'000, english), std::optional(QStringLiteral("48 kB/s")));
        QCOMPARE(rateText(48'000.9, english), std::optional(QStringLiteral("48 kB/s")));
        QCOMPARE(rateText(0, english), std::nullopt);
        QCOMPARE(rateText(-5, english), std::nullopt);
        QCOMPARE(rateText(std::numeric_limits<double>::infinity(), english), std::nullopt);
        QCOMPARE(rateText(std::numeric_limits<double>::quiet_NaN(), english), std::nullopt);
        QCOMPARE(rateText(9.3e18, english), std::nullopt);
        QCOMPARE(rateText(9223372036854775808.0, english), std::nullopt);
        QVERIFY(rateText(9.2e18, english).has_value());
    }

    void timeLeftComesFromTheRemainingBytesAndTheRate() {
        using Phase = TransferProgress::Phase;
        QCOMPARE(timeLeftText({Phase::Uploading, 500, 1000, 100}),
                 std::optional(QStringLiteral("About 5 s left")));
        QCOMPARE(timeLeftText({Phase::Uploading, 0, 600'000, 1000}),
                 std::optional(QStringLiteral("About 10 min left")));
        QCOMPARE(timeLeftText({Phase::Uploading, 0, 4'000'000'000, 1'000'000}),
                 std::optional(QStringLiteral("About 1 h 7 min left")));
        QCOMPARE(timeLeftText({Phase::Uploading, 500, 1000, 0}), std::nullopt);
        QCOMPARE(timeLeftText({Phase::Uploading, 1000, 1000, 100}), std::nullopt);
        QCOMPARE(timeLeftText({Phase::Completed, 500, 1000, 100}), std::nullopt);
        QCOMPARE(timeLeftText({Phase::Uploading, 0, 1000, std::numeric_limits<double>::infinity()}),
                 std::nullopt);
    }

    void machineStatusWordsAndSubtitle() {
        QCOMPARE(statusWord(Machine::ConnectionStatus::Discovered), QStringLiteral("Available"));
        QCOMPARE(statusWord(Machine::ConnectionStatus::Connecting), QStringLiteral("Connecting"));
        QCOMPARE(statusWord(Machine::ConnectionStatus::Connected), QStringLiteral("Connected"));
        QCOMPARE(statusWord(Machine::ConnectionStatus::Busy), QStringLiteral("Busy"));
        QCOMPARE(statusWord(Machine::ConnectionStatus::Unavailable), QStringLiteral("Unavailable"));
        const Machine known{QStringLiteral("Bench Mill"), QStringLiteral("M-200"),
                            QStringLiteral("10.0.0.5"), 80, Machine::ConnectionStatus::Busy};
        QCOMPARE(machineSubtitle(known), QStringLiteral("M-200 \u00B7 10.0.0.5:80"));
        Machine unknown = known;
        unknown.model.reset();
        QCOMPARE(machineSubtitle(unknown), QStringLiteral("Model unknown \u00B7 10.0.0.5:80"));
    }

    void manualPortRules_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("portUsed");
        QTest::newRow("usual") << QStringLiteral("2222") << true << 2222;
        QTest::newRow("zero") << QStringLiteral("0") << true << 0;
        QTest::newRow("largest") << QStringLiteral("65535") << true << 65535;
        QTest::newRow("plus sign") << QStringLiteral("+80") << true << 80;
        QTest::newRow("leading zeros") << QStringLiteral("0080") << true << 80;
        QTest::newRow("empty") << QString() << false << 2222;
        QTest::newRow("too large") << QStringLiteral("70000") << false << 2222;
        QTest::newRow("letters") << QStringLiteral("12a") << false << 2222;
        QTest::newRow("minus") << QStringLiteral("-1") << false << 2222;
        QTest::newRow("only plus") << QStringLiteral("+") << false << 2222;
        QTest::newRow("blank") << QStringLiteral(" 80") << false << 2222;
        QTest::newRow("huge") << QStringLiteral("99999999999999999999999") << false << 2222;
        QTest::newRow("arabic-indic digits") << QStringLiteral("\u0662\u0662") << false << 2222;
    }

    void manualPortRules() {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QFETCH(int, portUsed);
        QCOMPARE(canAddManualMachine(QStringLiteral("10.0.0.5"), text), accepted);
        QCOMPARE(int(portForManualEntry(text)), portUsed);
        QVERIFY(!canAddManualMachine(QString(), QStringLiteral("2222")));
    }

    void updateAlertForms() {
        const QUrl url(QStringLiteral("https://example.test/download"));
        const UpdateAlertContent available =
            updateAvailableAlert(QStringLiteral("1.4.2"), url, QStringLiteral("tarnwick.app"));
        QCOMPARE(available.title, QStringLiteral("Update Available"));
        QCOMPARE(available.message,
                 QStringLiteral("Tarnwick 1.4.2 is available from tarnwick.app/quorle."));
        QCOMPARE(available.downloadUrl, std::optional(url));
        QCOMPARE(available.dismissButton, std::optional(QStringLiteral("Later")));

        const UpdateAlertContent failed = updateFailedAlert(QStringLiteral("Host not found"));
        QCOMPARE(failed.title, QStringLiteral("Update Check Failed"));
        QCOMPARE(failed.message, QStringLiteral("Host not found"));
        QCOMPARE(failed.downloadUrl, std::nullopt);
        QCOMPARE(failed.dismissButton, std::optional(QStringLiteral("OK")));

        const UpdateAlertContent current = upToDateAlert();
        QCOMPARE(current.title, QStringLiteral("Up to Date"));
        QCOMPARE(current.message,
                 QStringLiteral("You are running the latest version of Tarnwick."));
        QCOMPARE(current.dismissButton, std::optional(QStringLiteral("OK")));

        const UpdateAlertContent none = noOutcomeAlert();
        QCOMPARE(none.title, QStringLiteral("Updates"));
        QVERIFY(none.message.isEmpty());
        QCOMPARE(none.dismissButton, std::nullopt);
        QCOMPARE(none.downloadUrl, std::nullopt);
    }

    void aboutVersionLine() {
        QCOMPARE(AboutView::versionLine(QStringLiteral("1.0.0"), QStringLiteral("7")),
                 QStringLiteral("Version 1.0.0 (7)"));
        QCOMPARE(AboutView::versionLine(std::nullopt, std::nullopt),
                 QStringLiteral("Version \u2014 (\u2014)"));
        QCOMPARE(AboutView::versionLine(QStringLiteral("2.1"), std::nullopt),
                 QStringLiteral("Version 2.1 (\u2014)"));
    }

    void settingsText() {
        QCOMPARE(SettingsView::explanation(QStringLiteral("updates.example")),
                 QStringLiteral("At launch, Tarnwick asks updates.example/quorle whether a newer "
                                "version is available. The request carries a random install "
                                "identifier used only to count installs \u2014 nothing about you "
                                "or your files is sent."));
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "TextTest.moc"
