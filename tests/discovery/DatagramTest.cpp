#include "discovery/MakeraDiscoveryDatagram.h"

#include <QTest>

using namespace tarnwick;
using enum DiscoveryPacketError;
using Datagram = MakeraDiscoveryDatagram;
constexpr auto busy = Machine::ConnectionStatus::Busy;

namespace {

Machine machine(const char* name = "Mill", Machine::ConnectionStatus status = {},
                const char* address = "192.168.1.20", quint16 port = 4000) {
    return Machine{QString::fromUtf8(name), std::nullopt, QString::fromLatin1(address), port,
                   status};
}
QVariant decoded(const QByteArray& payload) {
    const Result<Machine> result = Datagram::decode(payload);
    return result ? QVariant::fromValue(result.value()) : QVariant::fromValue(result.error());
}
void row(const char* name, const QByteArray& payload, const Machine& expected) {
    QTest::newRow(name) << payload << QVariant::fromValue(expected);
}
void row(const char* name, const QByteArray& payload, DiscoveryPacketError expected) {
    QTest::newRow(name) << payload << QVariant::fromValue(Error(expected));
}

} // namespace

class DatagramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decode_data() {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QVariant>("expected");
        row("plain", "Mill,192.168.1.20,4000,0", machine());
        row("empty name", ",192.168.1.20,4000,1", machine("Makera machine", busy));
        row("blanks inside kept", " Big  Mill\t,192.168.1.20,4000,0", machine("Big  Mill\t"));
        row("Unicode trimming", "\r\n\u00A0\u3000Mill,192.168.1.20,4000,1\u2029\n",
            machine("Mill", busy));
        row("extra fields ignored", "Mill,192.168.1.20,4000,0,more,,fields", machine());
        row("busy with a blank", "Mill,192.168.1.20,4000,1 ,x", machine());
        row("port with a plus sign", "Mill,192.168.1.20,+4000,0", machine());
        row("three fields", "Mill,192.168.1.20,4000", InsufficientFields);
        // The address rule has its own table; here it is only judged before the port.
        row("address judged before port", "Mill,192.168.1.999,0,0", InvalidAddress);
        row("port 0", "Mill,192.168.1.20,0,0", InvalidPort);
        row("port over 65535", "Mill,192.168.1.20,65536,0", InvalidPort);
        row("port blank", "Mill,192.168.1.20, 4000,0", InvalidPort);
        row("port full-width digits", "Mill,192.168.1.20,４０００,0", InvalidPort);
        row("cut short, ignored field", "Mill,192.168.1.20,4000,0,\xE2\x82", InvalidUTF8);
        row("UTF-8 before field count", "\xFF", InvalidUTF8);
    }
    void decode() {
        QFETCH(QByteArray, payload);
        QFETCH(QVariant, expected);
        QCOMPARE(decoded(payload), expected);
    }

    void encode() {
        const Machine fraese = machine("Fräse 🛠", busy, "255.255.255.255", 65535);
        QCOMPARE(Datagram::encode(fraese), "Fräse 🛠,255.255.255.255,65535,1");
        QCOMPARE(decoded(Datagram::encode(fraese)), QVariant::fromValue(fraese));
        const Machine connected = machine("A, B", Machine::ConnectionStatus::Connected, "0.0.0.0");
        QCOMPARE(Datagram::encode(connected), "A  B,0.0.0.0,4000,0");
    }
};

QTEST_GUILESS_MAIN(DatagramTest)
#include "DatagramTest.moc"
