#include "Announcer.h"
#include "discovery/LANMachineDiscoverer.h"

#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

// Machines announce themselves on UDP port 3333; this test holds that port for itself.
class DefaultPortTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<Error>(); }

    void listensOnTheAnnouncementPort() {
        LANMachineDiscoverer discoverer;
        QCOMPARE(discoverer.port(), quint16(3333));
        std::unique_ptr<MachineScan> scan(discoverer.discover(2s, nullptr));
        QSignalSpy found(scan.get(), &MachineScan::machineFound);
        QSignalSpy failed(scan.get(), &Operation::failed);
        QSignalSpy finished(scan.get(), &Operation::finished);

        // The listener shares the port, so a second program can listen beside it.
        QUdpSocket neighbour;
        QVERIFY(neighbour.bind(QHostAddress::AnyIPv4, 3333,
                               QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint));
        neighbour.close();

        Announcer announcer(3333);
        QVERIFY(announcer.send("Mill,192.168.1.20,4000,1"));
        QTRY_COMPARE(found.size(), 1);
        QCOMPARE(found.at(0).at(0).value<Machine>(),
                 (Machine{QStringLiteral("Mill"), std::nullopt, QStringLiteral("192.168.1.20"),
                          4000, Machine::ConnectionStatus::Busy}));
        QVERIFY(finished.wait(5000));
        QCOMPARE(failed.size(), 0);
    }
};

QTEST_GUILESS_MAIN(DefaultPortTest)
#include "DefaultPortTest.moc"
