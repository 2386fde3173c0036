#include "ui/AboutView.h"
#include "ui/Formatting.h"
#include "ui/ManualEntryRules.h"
#include "ui/SettingsView.h"
#include "ui/UpdateAlertContent.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace tarnwick;
using namespace tarnwick::ui;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

class TextTest : public QObject {
    Q_OBJECT

    const QLocale english{QLocale::English, QLocale::UnitedStates};

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(english); }

    void byteCountsUseDecimalUnits() {
        const std::pair<qint64, const char*> cases[] = {
            {0, "0 bytes"},          {1, "1 byte"},
            {999, "999 bytes"},      {48'000, "48 kB"},
            {1'234'567, "1.2 MB"},   {4'700'000'000, "4.7 GB"},
            {220'000'000, "220 MB"}, {48'300'000'000, "48.3 GB"},
            {999'999, "1.0 MB"},     {std::numeric_limits<qint64>::max(), "9.2 EB"}};
        for (const auto& [bytes, text] : cases)
            QCOMPARE(byteCount(bytes, english), QString::fromLatin1(text));
    }

    void percentagesAreWholeAndClamped() {
        const std::pair<double, const char*> cases[] = {{0.5, "50%"},   {0, "0%"},
                                                        {1, "100%"},    {0.996, "100%"},
                                                        {0.254, "25%"}, {notANumber, "0%"}};
        for (const auto& [fraction, text] : cases)
            QCOMPARE(percentText(fraction, english), QString::fromLatin1(text));
    }

    void rateIsShownOnlyWhenItIsAUsableByteCount() {
        QCOMPARE(rateText(48'000.9, english), std::optional(QStringLiteral("48 kB/s")));
        QVERIFY(rateText(9.2e18, english).has_value());
        for (const double unusable : {0.0, -5.0, infinity, notANumber, 9223372036854775808.0})
            QCOMPARE(rateText(unusable, english), std::nullopt);
    }

    void timeLeftComesFromTheRemainingBytesAndTheRate() {
        using Phase = TransferProgress::Phase;
        const std::pair<TransferProgress, const char*> cases[] = {
            {{Phase::Uploading, 500, 1000, 100}, "About 5 s left"},
            {{Phase::Uploading, 0, 600'000, 1000}, "About 10 min left"},
            {{Phase::Uploading, 0, 4'000'000'000, 1'000'000}, "About 1 h 7 min left"},
            {{Phase::Uploading, 500, 1000, 0}, nullptr},
            {{Phase::Uploading, 1000, 1000, 100}, nullptr},
            {{Phase::Completed, 500, 1000, 100}, nullptr},
            {{Phase::Uploading, 0, 1000, infinity}, nullptr}};
        for (const auto& [progress, text] : cases)
            QCOMPARE(timeLeftText(progress),
                     text ? std::optional(QString::fromLatin1(text)) : std::nullopt);
    }

    void phaseTitlesStatusWordsAndSubtitle() {
        using Phase = TransferProgress::Phase;
        using Status = Machine::ConnectionStatus;
        QCOMPARE((QStringList{phaseTitle(Phase::Preparing), phaseTitle(Phase::Uploading),
                              phaseTitle(Phase::Completed), phaseTitle(Phase::Cancelled)}),
                 (QStringList{QStringLiteral("Preparing"), QStringLiteral("Uploading"),
                              QStringLiteral("Upload complete"), QStringLiteral("Cancelled")}));
        QCOMPARE((QStringList{statusWord(Status::Discovered), statusWord(Status::Connecting),
                              statusWord(Status::Connected), statusWord(Status::Busy),
                              statusWord(Status::Unavailable)}),
                 (QStringList{QStringLiteral("Available"), QStringLiteral("Connecting"),
                              QStringLiteral("Connected"), QStringLiteral("Busy"),
                              QStringLiteral("Unavailable")}));
        Machine machine{QStringLiteral("Bench Mill"), QStringLiteral("M-200"),
                        QStringLiteral("10.0.0.5"), 80, Status::Busy};
        QCOMPARE(machineSubtitle(machine), QStringLiteral("M-200 \u00B7 10.0.0.5:80"));
        machine.model.reset();
        QCOMPARE(machineSubtitle(machine), QStringLiteral("Model unknown \u00B7 10.0.0.5:80"));
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
        const UpdateAlertContent expected[] = {
            {QStringLiteral("Update Available"),
             QStringLiteral("Tarnwick 1.4.2 is available from tarnwick.app/quorle."), url,
             QStringLiteral("Later"), QMessageBox::Information},
            {QStringLiteral("Update Check Failed"), QStringLiteral("Host not found"), std::nullopt,
             QStringLiteral("OK"), QMessageBox::Warning},
            {QStringLiteral("Up to Date"),
             QStringLiteral("You are running the latest version of Tarnwick."), std::nullopt,
             QStringLiteral("OK"), QMessageBox::Information},
            {QStringLiteral("Updates"), QString(), std::nullopt, std::nullopt,
             QMessageBox::NoIcon}};
        const UpdateAlertContent actual[] = {
            updateAvailableAlert(QStringLiteral("1.4.2"), url, QStringLiteral("tarnwick.app")),
            updateFailedAlert(QStringLiteral("Host not found")), upToDateAlert(), noOutcomeAlert()};
        for (size_t i = 0; i < std::size(expected); ++i)
            QVERIFY2(actual[i] == expected[i], qPrintable(expected[i].title));
    }

    void aboutVersionLine() {
        QCOMPARE(AboutView::versionLine(QStringLiteral("1.0.0"), QStringLiteral("7")),
                 QStringLiteral("Version 1.0.0 (7)"));
        QCOMPARE(AboutView::versionLine(std::nullopt, std::nullopt),
                 QStringLiteral("Version \u2014 (\u2014)"));
        QCOMPARE(AboutView::versionLine(QStringLiteral("2.1"), std::nullopt),
                 QStringLiteral("Version 2.1 (\u2014)"));
    }

    void settingsTextAndStoredChoice() {
        QCOMPARE(SettingsView::explanation(QStringLiteral("updates.example")),
                 QStringLiteral("At launch, Tarnwick asks updates.example/quorle whether a newer "
                                "version is available. The request carries a random install "
                                "identifier used only to count installs \u2014 nothing about you "
                                "or your files is sent."));
        QTemporaryDir dir;
        QSettings store(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        QVERIFY(SettingsView::automaticChecks(store));
        store.setValue(SettingsView::automaticChecksKey, false);
        store.sync();
        QSettings reread(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        QVERIFY(!SettingsView::automaticChecks(reread));
        for (const QVariant& unclear : {QVariant(QStringLiteral("sometimes")), QVariant(0)}) {
            reread.setValue(SettingsView::automaticChecksKey, unclear);
            QVERIFY(SettingsView::automaticChecks(reread));
        }
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "TextTest.moc"
