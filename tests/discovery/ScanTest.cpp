#include "Announcer.h"
#include "discovery/LANMachineDiscoverer.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {

using Status = Machine::ConnectionStatus;

// Everything one scan emitted, in order.
struct ScanRecorder {
    explicit ScanRecorder(MachineScan* scan)
        : found(scan, &MachineScan::machineFound)
        , finished(scan, &Operation::finished)
        , failed(scan, &Operation::failed) {}

    QList<Machine> machines() const {
        QList<Machine> list;
        for (const QList<QVariant>& arguments : found)
            list.append(arguments.at(0).value<Machine>());
        return list;
    }
    Error failure() const { return failed.at(0).at(0).value<Error>(); }
    int outcomes() const { return int(finished.size() + failed.size()); }

    QSignalSpy found;
    QSignalSpy finished;
    QSignalSpy failed;
};

Machine machine(const char* name, quint16 port, Status status = Status::Discovered) {
    return Machine{QString::fromUtf8(name), std::nullopt, QStringLiteral("192.168.1.20"), port,
                   status};
}

// Lets the scan read what has been sent; loopback delivery is immediate.
void settle() {
    QTest::qWait(100);
}

} // namespace

class ScanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<Error>(); }

    void eachMachineOnceTheFirstAnnouncementWins() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> scan(discoverer.discover(60s, nullptr));
        ScanRecorder recorder(scan.get());

        Announcer mill(port);
        Announcer other(port);
        Announcer garbage(port);
        QVERIFY(mill.send("Mill,192.168.1.20,4000,1"));
        QVERIFY(mill.send("Mill,192.168.1.20,4000,0"));
        QVERIFY(garbage.send("Lathe,192.168.1.21"));
        QVERIFY(garbage.send("\xFF\xFE"));
        QVERIFY(garbage.send("Lathe,192.168.1.021,4000,0"));
        QVERIFY(garbage.send(""));
        QVERIFY(other.send("Second spindle,192.168.1.20,4001,0"));
        // Renamed, but the same address and port: the same machine.
        QVERIFY(other.send("Renamed,192.168.1.20,4000,0\n"));
        QVERIFY(mill.send("Mill,192.168.1.20,4000,1"));
        QVERIFY(garbage.send("Router,10.0.0.1,65535,0"));
        QTRY_COMPARE(recorder.found.size(), 3);
        settle();

        const QList<Machine> expected{
            machine("Mill", 4000, Status::Busy),
            machine("Second spindle", 4001),
            Machine{QStringLiteral("Router"), std::nullopt, QStringLiteral("10.0.0.1"), 65535,
                    Status::Discovered},
        };
        QCOMPARE(recorder.machines(), expected);
        QCOMPARE(recorder.outcomes(), 0);
    }

    void announcementsWaitingTogetherAreAllRead() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> scan(discoverer.discover(60s, nullptr));
        ScanRecorder recorder(scan.get());

        // Sent before the scan gets a chance to read, so they all wait in the socket at once.
        Announcer announcer(port);
        for (quint16 i = 1; i <= 50; ++i) {
            QVERIFY(announcer.send("M" + QByteArray::number(i) + ",10.0.0." +
                                   QByteArray::number(i) + ",2222,0"));
        }
        QTRY_COMPARE(recorder.found.size(), 50);
        const QList<Machine> machines = recorder.machines();
        for (int i = 0; i < 50; ++i)
            QCOMPARE(machines.at(i).id(), QStringLiteral("10.0.0.%1:2222").arg(i + 1));
    }

    void aLongAnnouncementIsReadWhole() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> scan(discoverer.discover(60s, nullptr));
        ScanRecorder recorder(scan.get());

        const QByteArray name(60000, 'n');
        Announcer announcer(port);
        QVERIFY(announcer.send(name + ",10.0.0.1,2222,0,"));
        // A datagram cut to a buffer's size would lose its address and be dropped.
        QVERIFY(announcer.send(name + ",10.0.0.2,2222,1"));
        QTRY_COMPARE(recorder.found.size(), 2);
        QCOMPARE(recorder.machines().at(0).name, QString::fromLatin1(name));
        QCOMPARE(recorder.machines().at(1).status, Status::Busy);
    }

    void endsNormallyWhenItsTimeIsOver() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        QElapsedTimer clock;
        clock.start();
        std::unique_ptr<MachineScan> scan(discoverer.discover(400ms, nullptr));
        ScanRecorder recorder(scan.get());
        QCOMPARE(recorder.outcomes(), 0);

        QVERIFY(recorder.finished.wait(5000));
        QVERIFY(clock.elapsed() >= 400);
        settle();
        QCOMPARE(recorder.finished.size(), 1);
        QCOMPARE(recorder.failed.size(), 0);
        QCOMPARE(recorder.found.size(), 0);

        // It no longer listens: the port can be taken exclusively, and nothing more arrives.
        QUdpSocket exclusive;
        QVERIFY(exclusive.bind(QHostAddress::AnyIPv4, port, QUdpSocket::DontShareAddress));
        exclusive.close();
        Announcer announcer(port);
        announcer.send("Mill,192.168.1.20,4000,0");
        settle();
        QCOMPARE(recorder.found.size(), 0);
        QCOMPARE(recorder.outcomes(), 1);
    }

    void aMachineHeardBeforeTheEndIsKept() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> scan(discoverer.discover(500ms, nullptr));
        ScanRecorder recorder(scan.get());
        Announcer announcer(port);
        QVERIFY(announcer.send("Mill,192.168.1.20,4000,0"));
        QVERIFY(recorder.finished.wait(5000));
        QCOMPARE(recorder.machines(), QList<Machine>{machine("Mill", 4000)});
    }

    void scansAreIndependentAndShareThePort() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> first(discoverer.discover(300ms, nullptr));
        std::unique_ptr<MachineScan> second(discoverer.discover(600ms, nullptr));
        ScanRecorder one(first.get());
        ScanRecorder two(second.get());
        QVERIFY(one.finished.wait(5000));
        QCOMPARE(two.outcomes(), 0);
        QVERIFY(two.finished.wait(5000));
        QCOMPARE(one.failed.size() + two.failed.size(), 0);
    }

    void deletedScanEmitsNothingMore() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        QObject owner;
        QPointer<MachineScan> scan = discoverer.discover(300ms, &owner);
        ScanRecorder recorder(scan);
        Announcer announcer(port);
        QVERIFY(announcer.send("Mill,192.168.1.20,4000,0"));
        QTRY_COMPARE(recorder.found.size(), 1);

        delete scan;
        QVERIFY(announcer.send("Lathe,192.168.1.21,4000,0"));
        QTest::qWait(500);
        QCOMPARE(recorder.found.size(), 1);
        QCOMPARE(recorder.outcomes(), 0);
        QUdpSocket exclusive;
        QVERIFY(exclusive.bind(QHostAddress::AnyIPv4, port, QUdpSocket::DontShareAddress));
    }

    void deletedWithItsParent() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        auto owner = std::make_unique<QObject>();
        QPointer<MachineScan> scan = discoverer.discover(60s, owner.get());
        owner.reset();
        QVERIFY(scan.isNull());
    }

    void cancelEndsWithCancellationAndStopsListening() {
        const quint16 port = freeUdpPort();
        LANMachineDiscoverer discoverer(port);
        std::unique_ptr<MachineScan> scan(discoverer.discover(60s, nullptr));
        ScanRecorder recorder(scan.get());
        Announcer announcer(port);
        QVERIFY(announcer.send("Mill,192.168.1.20,4000,0"));
        QTRY_COMPARE(recorder.found.size(), 1);

        scan->cancel();
        QCOMPARE(recorder.outcomes(), 0);
        QVERIFY(announcer.send("Lathe,192.168.1.21,4000,0"));
        QVERIFY(recorder.failed.wait(5000));
        QCOMPARE(recorder.failure(), Error(CancellationError{}));

        scan->cancel();
        settle();
        QCOMPARE(recorder.found.size(), 1);
        QCOMPARE(recorder.finished.size(), 0);
        QCOMPARE(recorder.failed.size(), 1);
    }

    void cancelAfterTheEndChangesNothing() {
        LANMachineDiscoverer discoverer(freeUdpPort());
        std::unique_ptr<MachineScan> scan(discoverer.discover(100ms, nullptr));
        ScanRecorder recorder(scan.get());
        QVERIFY(recorder.finished.wait(5000));
        scan->cancel();
        settle();
        QCOMPARE(recorder.finished.size(), 1);
        QCOMPARE(recorder.failed.size(), 0);
    }

    void aPortHeldExclusivelyFailsTheScan() {
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        LANMachineDiscoverer discoverer(holder.localPort());
        std::unique_ptr<MachineScan> scan(discoverer.discover(300ms, nullptr));
        ScanRecorder recorder(scan.get());
        QCOMPARE(recorder.outcomes(), 0);

        QVERIFY(recorder.failed.wait(5000));
        const Error error = recorder.failure();
        const auto* platform = error.get<PlatformError>();
        QVERIFY(platform);
        QCOMPARE(platform->domain, PlatformError::Domain::Network);
        QCOMPARE(platform->code, int(QAbstractSocket::AddressInUseError));
        QCOMPARE(error.description(), QStringLiteral("The bound address is already in use"));

        // No normal end follows once the listening time is over.
        QTest::qWait(500);
        QCOMPARE(recorder.outcomes(), 1);
        QCOMPARE(recorder.found.size(), 0);
    }
};

QTEST_GUILESS_MAIN(ScanTest)
#include "ScanTest.moc"
