#include "app/AppModel.h"
#include "discovery/NetworkMachineConnector.h"
#include "support/FakeServices.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "transfer/MakeraFileUploader.h"
#include "ui/ContentView.h"
#include "ui/UploadConfirmationView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

// The main window over the real connector and uploader, sending a file to the simulated
// machine on 127.0.0.1 the way a user does: address by hand, file, review, upload.
class DesktopUploadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileTravelsFromTheWindowToTheMachine() {
        SimProcess sim;
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        AppModel model(std::make_unique<FakeDiscoverer>(),
                       std::make_unique<NetworkMachineConnector>(), MakeraFileUploader::factory(),
                       std::make_unique<AppPersistence>(temporaryStore(dir)));
        ContentView window(model);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QTest::mouseClick(window.findChild<QPushButton*>(u"enterAddressButton"_s), Qt::LeftButton);
        window.findChild<QLineEdit*>(u"addressField"_s)->setText(u"127.0.0.1"_s);
        window.findChild<QLineEdit*>(u"portField"_s)->setText(QString::number(port));
        QTest::mouseClick(window.findChild<QPushButton*>(u"addButton"_s), Qt::LeftButton);
        QTRY_COMPARE(model.selectedMachine()->status, Machine::ConnectionStatus::Connected);

        QByteArray content;
        for (int line = 0; line < 5000; ++line)
            content +=
                "G1 X" + QByteArray::number(line % 97) + " Y" + QByteArray::number(line) + "\n";
        window.chooseJobFile(writeFile(dir, u"tray.nc"_s, content));
        QTest::mouseClick(window.findChild<QPushButton*>(u"reviewButton"_s), Qt::LeftButton);
        UploadConfirmationView* sheet = nullptr;
        QTRY_VERIFY((sheet = window.findChild<UploadConfirmationView*>()) && sheet->isVisible());
        QTest::mouseClick(sheet->findChild<QPushButton*>(u"uploadButton"_s), Qt::LeftButton);

        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 10000);
        QCOMPARE(model.errorMessage(), std::nullopt);
        QCOMPARE(window.findChild<QLabel*>(u"transferTitle"_s)->text(), u"Upload complete"_s);
        QCOMPARE(sim.stored(u"tray.nc"_s), content);
        QVERIFY(model.isRecentDuplicate());
    }
};

QTEST_MAIN(DesktopUploadTest)
#include "DesktopUploadTest.moc"
