#include "Announcer.h"
#include "discovery/LANMachineDiscoverer.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// One scan and the signals it emitted.
struct Scan {
    Scan(LANMachineDiscoverer discoverer, std::chrono::milliseconds duration)
        : scan(discoverer.discover(duration, nullptr))
        , found(scan, &MachineScan::machineFound)
        , finished(scan, &Operation::finished)
        , failed(scan, &Operation::failed) {}
    QStringList machines() const {
        QStringList list;
        for (const QVariantList& arguments : found) {
            const auto machine = arguments.at(0).value<Machine>();
            list.append(machine.name + u' ' + machine.id() + u' ' + rawValue(machine.status));
        }
        return list;
    }
    qsizetype emitted() const { return found.size() + finished.size() + failed.size(); }

    MachineScan* scan; // it deletes itself once it has ended
    QSignalSpy found, finished, failed;
};

} // namespace

class ScanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachMachineOnceTheFirstAnnouncementWinsUntilDeleted() {
        const quint16 port = freeUdpPort();
        Scan scan(LANMachineDiscoverer(port), 1s);
        for (const char* payload :
             {"Mill,192.168.1.20,4000,1", "Mill,192.168.1.20,4000,0", "Lathe,192.168.1.21",
              "\xFF,192.168.1.21,4000,0", "Second spindle,192.168.1.20,4001,0",
              "Renamed,192.168.1.20,4000,0", "Lathe,192.168.1.021,4000,0", "Last,10.0.0.1,1,0"})
            QVERIFY(announce(port, payload));
        QTRY_COMPARE(scan.found.size(), 3);
        QCOMPARE(scan.machines(), (QStringList{u"Mill 192.168.1.20:4000 busy"_s,
                                               u"Second spindle 192.168.1.20:4001 discovered"_s,
                                               u"Last 10.0.0.1:1 discovered"_s}));
        delete scan.scan;
        QVERIFY(announce(port, "Lathe,192.168.1.21,4000,0"));
        QTest::qWait(1200); // past the listening time
        QCOMPARE(scan.emitted(), 3);
    }

    // Nothing heard, it ends after its duration; on a port held exclusively, it fails. Either
    // way it ends once.
    void endsOnceWhenNothingIsHeardOrItCannotListen() {
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        const PlatformError inUse{PlatformError::Domain::Network,
                                  int(QAbstractSocket::AddressInUseError),
                                  u"The bound address is already in use"_s};
        for (const bool held : {false, true}) {
            QElapsedTimer clock;
            clock.start();
            Scan scan(LANMachineDiscoverer(held ? holder.localPort() : freeUdpPort()), 400ms);
            QCOMPARE(scan.emitted(), 0);
            QVERIFY((held ? scan.failed : scan.finished).wait(5000));
            QVERIFY2(held || clock.elapsed() >= 400, qPrintable(QString::number(clock.elapsed())));
            QTest::qWait(500); // past the listening time
            QCOMPARE(scan.emitted(), 1);
            if (held)
                QCOMPARE(scan.failed.at(0).at(0).value<Error>(), Error(inUse));
        }
    }

    // Machines announce on UDP port 3333; the test holds a resource lock on it.
    void listensOnTheAnnouncementPortByDefault() {
        Scan scan(LANMachineDiscoverer(), 2s);
        QVERIFY(announce(3333, "Mill,192.168.1.20,4000,1"));
        QVERIFY(scan.finished.wait(5000));
        QCOMPARE(scan.machines(), QStringList{u"Mill 192.168.1.20:4000 busy"_s});
    }
};

QTEST_GUILESS_MAIN(ScanTest)
#include "ScanTest.moc"
