#include "protocol/MakeraFrameParser.h"
#include "support/SimProcess.h"

#include <QCryptographicHash>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

namespace {

// A hand-driven controller client: sends packets, waits (bounded) for the next one.
class RawClient {
public:
    bool connectTo(SimProcess& sim) {
        const quint16 port = sim.waitUntilListening();
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        return port != 0 && m_socket.waitForConnected(5000);
    }
    void send(MakeraPacketType type, const QByteArray& payload = {}) {
        m_socket.write(MakeraPacket{type, payload}.encoded().value());
        m_socket.flush();
    }
    std::optional<MakeraPacket> next(int boundMs = 3000) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < boundMs) {
            if (std::optional<MakeraPacket> packet = m_parser.next())
                return packet;
            if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(50))
                continue;
            m_parser.append(m_socket.readAll());
        }
        return std::nullopt;
    }
    std::optional<MakeraPacketType> nextType() {
        const std::optional<MakeraPacket> packet = next();
        return packet ? std::optional(packet->type) : std::nullopt;
    }

private:
    QTcpSocket m_socket;
    MakeraFrameParser m_parser;
};

} // namespace

class SimMachineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesItselfOnTheGivenAddress() {
        QUdpSocket listener;
        QVERIFY(listener.bind(QHostAddress::LocalHost, 0));
        SimProcess sim({u"--announce-to"_s, u"127.0.0.1:%1"_s.arg(listener.localPort()),
                        u"--name"_s, u"Bench mill"_s, u"--busy"_s});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);

        QTRY_VERIFY_WITH_TIMEOUT(listener.hasPendingDatagrams(), 3000);
        QByteArray datagram(int(listener.pendingDatagramSize()), Qt::Uninitialized);
        listener.readDatagram(datagram.data(), datagram.size());
        QCOMPARE(datagram, "Bench mill,127.0.0.1," + QByteArray::number(port) + ",1");
    }

    void refusesNamesThatLeaveTheFolder_data() {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("parent") << QByteArray("upload /sd/gcodes/..\n");
        QTest::newRow("slash inside") << QByteArray("upload /sd/gcodes/x/../../evil.nc\n");
        QTest::newRow("backslash") << QByteArray("upload /sd/gcodes/..\\evil.nc\n");
        QTest::newRow("other folder") << QByteArray("upload /sd/other/evil.nc\n");
        QTest::newRow("no line end") << QByteArray("upload /sd/gcodes/evil.nc");
    }
    void refusesNamesThatLeaveTheFolder() {
        QFETCH(QByteArray, command);
        SimProcess sim;
        RawClient client;
        QVERIFY(client.connectTo(sim));
        client.send(MakeraPacketType::FileStart, command);
        QCOMPARE(client.nextType(), MakeraPacketType::FileCancel);
        // Nothing written at all, inside the folder or outside it.
        QCOMPARE(
            QDir(sim.store().path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList{QStringLiteral("packets.log")});
    }

    // The client's opening and reply agree, but the chunk that follows is not what they name.
    void refusesAFileWhoseDigestDiffers() {
        SimProcess sim;
        RawClient client;
        QVERIFY(client.connectTo(sim));
        const QByteArray wrong =
            QCryptographicHash::hash("something else", QCryptographicHash::Md5).toHex();
        client.send(MakeraPacketType::FileStart, "upload /sd/gcodes/y.nc\n");
        client.send(MakeraPacketType::FileMD5, wrong);
        const QList<MakeraPacket> replies{
            {MakeraPacketType::FileMD5, wrong},
            {MakeraPacketType::FileView, QByteArray::fromHex("000000012000")},
            {MakeraPacketType::FileData, QByteArray::fromHex("00000001") + "G0 Y1\n"}};
        for (const MakeraPacket& reply : replies) {
            QCOMPARE(client.nextType(), reply.type);
            client.send(reply.type, reply.payload);
        }
        QCOMPARE(client.nextType(), MakeraPacketType::FileCancel);
        QVERIFY(sim.storedNames().isEmpty());
        // The chunk it had written as it came is gone too.
        QVERIFY(QDir(sim.store().filePath(u"partial"_s)).isEmpty());
    }

    void ignoresPacketsThatAreNoPartOfAnUpload() {
        SimProcess sim({u"--ftype"_s, u"t"_s});
        RawClient client;
        QVERIFY(client.connectTo(sim));
        client.send(MakeraPacketType::ControlSingle, "~");
        client.send(MakeraPacketType::ControlMulti, "play /sd/gcodes/x.nc");
        client.send(MakeraPacketType::FileData, QByteArray::fromHex("00000001"));
        QVERIFY(!client.next(500));
        // Still answering afterwards.
        client.send(MakeraPacketType::ControlMulti, "ftype");
        const auto report = client.next();
        QVERIFY(report);
        QCOMPARE(report->payload, QByteArray("ftype = t\n"));
        QCOMPARE(sim.loggedTypes(),
                 u"controlSingle controlMulti fileData controlMulti"_s.split(u' '));
    }
};

QTEST_GUILESS_MAIN(SimMachineTest)
#include "SimMachineTest.moc"
