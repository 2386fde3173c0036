// Floods a scan with announcements on loopback and prints what it heard, how much memory it
// took and when it ended. Every valid machine must be listed exactly once and nothing else.
//
//   cmake --preset release -DTARNWICK_BUILD_BENCHMARKS=ON
//   cmake --build --preset release --target bench_scan_flood
//   build-release/bin/bench_scan_flood [--datagrams N] [--machines M] [--rate PER_SECOND]
//                                      [--seconds S]
//
// Loopback drops datagrams when the receive buffer is full; the drops are read from the system's
// UDP counters and printed, and a machine counts as heard if any of its announcements got through.

#include "discovery/LANMachineDiscoverer.h"
#include "discovery/MakeraDiscoveryDatagram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QUdpSocket>

#include <chrono>
#include <cstdio>
#include <sys/resource.h>
#include <thread>
#include <vector>

using namespace tarnwick;
using namespace std::chrono;

namespace {

struct Options {
    int datagrams = 100000;
    int machines = 500;
    int rate = 50000;
    double seconds = 6;
};

Options parseOptions(const QStringList& arguments) {
    Options options;
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        const QString& name = arguments[i];
        const QString& value = arguments[i + 1];
        if (name == QLatin1String("--datagrams"))
            options.datagrams = value.toInt();
        else if (name == QLatin1String("--machines"))
            options.machines = value.toInt();
        else if (name == QLatin1String("--rate"))
            options.rate = value.toInt();
        else if (name == QLatin1String("--seconds"))
            options.seconds = value.toDouble();
    }
    return options;
}

// Machine i: two machines per address, on ports 4000 and 4001; every fifth one busy.
Machine floodMachine(int i) {
    const int host = i / 2;
    return Machine{
        QStringLiteral("Flood %1").arg(i), std::nullopt,
        QStringLiteral("10.%1.%2.%3").arg(host / 62500).arg(host / 250 % 250).arg(host % 250 + 1),
        quint16(4000 + i % 2),
        i % 5 == 0 ? Machine::ConnectionStatus::Busy : Machine::ConnectionStatus::Discovered};
}

// Announcements that must all be dropped; several would name a new machine if a rule slipped.
QByteArray malformed(int n) {
    switch (n % 8) {
    case 0:
        return QByteArrayLiteral("Ghost,10.0.0.01,4000,0");
    case 1:
        return QByteArrayLiteral("Ghost,10.0.0.1,0,0");
    case 2:
        return QByteArrayLiteral("Ghost,10.0.0.1,65536,1");
    case 3:
        return QByteArrayLiteral("Ghost,10.0.0.1,4000");
    case 4:
        return QByteArrayLiteral("Ghost\xFF,10.0.0.1,4000,0");
    case 5:
        return QByteArrayLiteral("Ghost,10.0.0.256,4000,0");
    case 6:
        return QByteArray();
    default:
        return QByteArrayLiteral("Ghost, 10.0.0.1,4000,0");
    }
}

long maxResidentKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// The system's UDP counters (Linux): datagrams received and datagrams dropped for want of room
// in a receive buffer.
struct UdpCounters {
    qint64 received = -1;
    qint64 bufferDrops = -1;
};

UdpCounters readUdpCounters() {
    QFile file(QStringLiteral("/proc/net/snmp"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // Read whole: files under /proc report a size of 0.
    const QList<QByteArray> lines = file.readAll().split('\n');
    QList<QByteArray> names;
    for (const QByteArray& line : lines) {
        if (!line.startsWith("Udp: "))
            continue;
        const QList<QByteArray> fields = line.split(' ');
        if (names.isEmpty()) {
            names = fields;
            continue;
        }
        UdpCounters counters;
        for (qsizetype i = 1; i < fields.size() && i < names.size(); ++i) {
            if (names[i] == "InDatagrams")
                counters.received = fields[i].toLongLong();
            else if (names[i] == "RcvbufErrors")
                counters.bufferDrops = fields[i].toLongLong();
        }
        return counters;
    }
    return {};
}

quint16 freeUdpPort() {
    QUdpSocket probe;
    probe.bind(QHostAddress::AnyIPv4, 0);
    return probe.localPort();
}

// Sends the flood from several sockets on 127.0.0.1, paced to the given rate.
void sendFlood(const Options& options, quint16 port, int* sent, int* valid) {
    std::vector<std::unique_ptr<QUdpSocket>> senders;
    for (int i = 0; i < 8; ++i) {
        senders.push_back(std::make_unique<QUdpSocket>());
        senders.back()->bind(QHostAddress::LocalHost, 0);
    }
    const auto start = steady_clock::now();
    for (int n = 0; n < options.datagrams; ++n) {
        const bool isMalformed = n % 3 == 2;
        const QByteArray payload =
            isMalformed
                ? malformed(n / 3)
                : MakeraDiscoveryDatagram::encode(floodMachine((n - n / 3) % options.machines));
        QUdpSocket& sender = *senders[size_t(n) % senders.size()];
        if (sender.writeDatagram(payload, QHostAddress::LocalHost, port) == payload.size()) {
            ++*sent;
            if (!isMalformed)
                ++*valid;
        }
        if (n % 100 == 99) {
            const auto due = start + microseconds(qint64(1e6 * (n + 1) / options.rate));
            std::this_thread::sleep_until(due);
        }
    }
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const Options options = parseOptions(app.arguments());
    const quint16 port = freeUdpPort();

    QSet<QString> expected;
    for (int i = 0; i < options.machines; ++i)
        expected.insert(floodMachine(i).id());

    const long rssBefore = maxResidentKiB();
    const UdpCounters countersBefore = readUdpCounters();

    LANMachineDiscoverer discoverer(port);
    const auto duration = milliseconds(qint64(options.seconds * 1000));
    QElapsedTimer clock;
    clock.start();
    MachineScan* scan = discoverer.discover(duration, &app);

    QHash<QString, int> heard;
    int invented = 0;
    int wrongRecord = 0;
    QObject::connect(scan, &MachineScan::machineFound, &app, [&](const Machine& machine) {
        if (!expected.contains(machine.id())) {
            ++invented;
            return;
        }
        const int index = machine.name.mid(6).toInt();
        if (machine != floodMachine(index))
            ++wrongRecord;
        ++heard[machine.id()];
    });
    qint64 endedAfter = -1;
    QString failure;
    QObject::connect(scan, &Operation::finished, &app, [&] {
        endedAfter = clock.elapsed();
        app.quit();
    });
    QObject::connect(scan, &Operation::failed, &app, [&](const Error& error) {
        endedAfter = clock.elapsed();
        failure = error.description();
        app.quit();
    });

    int sent = 0;
    int validSent = 0;
    qint64 sendingTook = 0;
    std::thread sender([&] {
        QElapsedTimer sendClock;
        sendClock.start();
        sendFlood(options, port, &sent, &validSent);
        sendingTook = sendClock.elapsed();
    });
    app.exec();
    sender.join();

    const UdpCounters countersAfter = readUdpCounters();
    const long rssAfter = maxResidentKiB();
    int duplicates = 0;
    for (const int count : std::as_const(heard))
        duplicates += count - 1;
    const qsizetype listed = heard.size();

    std::printf("datagrams sent          %d (%d valid, %d malformed) in %lld ms\n", sent, validSent,
                sent - validSent, static_cast<long long>(sendingTook));
    if (countersBefore.received >= 0) {
        std::printf("system UDP received     %lld, receive-buffer drops %lld (all programs)\n",
                    static_cast<long long>(countersAfter.received - countersBefore.received),
                    static_cast<long long>(countersAfter.bufferDrops - countersBefore.bufferDrops));
    }
    std::printf("machines listed         %lld of %d\n", static_cast<long long>(listed),
                options.machines);
    std::printf("duplicates              %d\n", duplicates);
    std::printf("invented                %d\n", invented);
    std::printf("records not as sent     %d\n", wrongRecord);
    std::printf("peak memory             %ld KiB before, %ld KiB after (+%ld KiB)\n", rssBefore,
                rssAfter, rssAfter - rssBefore);
    std::printf("scan ended after        %lld ms (asked for %lld ms)%s%s\n",
                static_cast<long long>(endedAfter), static_cast<long long>(duration.count()),
                failure.isEmpty() ? "" : ", failed: ", qPrintable(failure));

    const bool ok = failure.isEmpty() && listed == options.machines && duplicates == 0 &&
                    invented == 0 && wrongRecord == 0 && endedAfter >= duration.count();
    std::printf("%s\n", ok ? "OK" : "NOT OK");
    return ok ? 0 : 1;
}
