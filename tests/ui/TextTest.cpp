#include "ui/AboutView.h"
#include "ui/Formatting.h"
#include "ui/ManualEntryRules.h"
#include "ui/SettingsView.h"
#include "ui/UpdateAlertContent.h"

#include <QTest>

using namespace tarnwick;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

class TextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void phaseTitlesStatusWordsAndSubtitle() {
        using Phase = TransferProgress::Phase;
        using Status = Machine::ConnectionStatus;
        QCOMPARE(
            (QStringList{phaseTitle(Phase::Preparing), phaseTitle(Phase::Uploading),
                         phaseTitle(Phase::Completed), phaseTitle(Phase::Cancelled)}),
            (QStringList{u"Preparing"_s, u"Uploading"_s, u"Upload complete"_s, u"Cancelled"_s}));
        QCOMPARE((QStringList{statusWord(Status::Discovered), statusWord(Status::Connecting),
                              statusWord(Status::Connected), statusWord(Status::Busy),
                              statusWord(Status::Unavailable)}),
                 (QStringList{u"Available"_s, u"Connecting"_s, u"Connected"_s, u"Busy"_s,
                              u"Unavailable"_s}));
        Machine machine{u"Bench Mill"_s, u"Test Rig"_s, u"10.0.0.5"_s, 80, Status::Busy};
        QCOMPARE(machineSubtitle(machine), u"Test Rig \u00B7 10.0.0.5:80"_s);
        machine.model.reset();
        QCOMPARE(machineSubtitle(machine), u"Model unknown \u00B7 10.0.0.5:80"_s);
    }

    // The port rule itself is the discovery port's; the field adds 0 and the usual port.
    void manualPortRules() {
        // The text, whether "Add" takes it, and the port used for it.
        const std::tuple<QString, bool, int> cases[] = {{u"+0080"_s, true, 80},
                                                        {u"000"_s, true, 0},
                                                        {QString(), false, 2222},
                                                        {u"70000"_s, false, 2222}};
        for (const auto& [text, accepted, port] : cases) {
            QVERIFY2(canAddManualMachine(u"10.0.0.5"_s, text) == accepted, qPrintable(text));
            QCOMPARE(int(portForManualEntry(text)), port);
        }
        QVERIFY(!canAddManualMachine(QString(), u"2222"_s));
    }

    void updateAlertForms() {
        const QUrl url(u"https://example.test/download"_s);
        const UpdateAlertContent expected[] = {
            {u"Update Available"_s, u"Tarnwick 1.4.2 is available from tarnwick.app/quorle."_s, url,
             u"Later"_s, QMessageBox::Information},
            {u"Update Check Failed"_s, u"Host not found"_s, std::nullopt, u"OK"_s,
             QMessageBox::Warning},
            {u"Up to Date"_s, u"You are running the latest version of Tarnwick."_s, std::nullopt,
             u"OK"_s, QMessageBox::Information},
            {u"Updates"_s, QString(), std::nullopt, std::nullopt, QMessageBox::NoIcon}};
        const UpdateAlertContent actual[] = {
            updateAvailableAlert(u"1.4.2"_s, url, u"tarnwick.app"_s),
            updateFailedAlert(u"Host not found"_s), upToDateAlert(), noOutcomeAlert()};
        for (size_t i = 0; i < std::size(expected); ++i)
            QVERIFY2(actual[i] == expected[i], qPrintable(expected[i].title));
    }

    void aboutVersionLine() {
        QCOMPARE(AboutView::versionLine(u"1.0.0"_s, u"7"_s) + AboutView::versionLine({}, {}),
                 u"Version 1.0.0 (7)Version \u2014 (\u2014)"_s);
    }

    void settingsText() {
        QCOMPARE(SettingsView::explanation(u"updates.example"_s),
                 QStringLiteral("At launch, Tarnwick asks updates.example/quorle whether a newer "
                                "version is available. The request carries a random install "
                                "identifier used only to count installs \u2014 nothing about you "
                                "or your files is sent."));
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "TextTest.moc"
