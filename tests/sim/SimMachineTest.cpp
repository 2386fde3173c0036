#include "protocol/MakeraFrameParser.h"
#include "support/SimProcess.h"

#include <QCryptographicHash>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>
#include <QtEndian>

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {

// A hand-driven controller client: sends packets, waits (bounded) for the next one.
class RawClient {
public:
    bool connectTo(quint16 port) {
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        return m_socket.waitForConnected(5000);
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

private:
    QTcpSocket m_socket;
    MakeraFrameParser m_parser;
};

QByteArray number(quint32 value) {
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

// Answers the simulator's requests for `content` until it ends or cancels; returns the last
// packet (fileEnd or fileCancel), or none when it stopped talking.
std::optional<MakeraPacket> serve(RawClient& client, const QByteArray& content,
                                  const QByteArray& md5) {
    const qint64 count = (content.size() + 8191) / 8192;
    while (std::optional<MakeraPacket> request = client.next()) {
        switch (request->type) {
        case MakeraPacketType::FileMD5:
            client.send(MakeraPacketType::FileMD5, md5);
            break;
        case MakeraPacketType::FileView:
            client.send(MakeraPacketType::FileView,
                        number(quint32(count)) + QByteArray::fromHex("2000"));
            break;
        case MakeraPacketType::FileData: {
            const quint32 n = qFromBigEndian<quint32>(request->payload.constData());
            client.send(MakeraPacketType::FileData, number(n) + content.mid((n - 1) * 8192, 8192));
            break;
        }
        default:
            return request;
        }
    }
    return std::nullopt;
}

QByteArray md5Of(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

} // namespace

class SimMachineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesItselfOnTheGivenAddress() {
        QUdpSocket listener;
        QVERIFY(listener.bind(QHostAddress::LocalHost, 0));
        QProcess sim;
        sim.start(binaryPath(QStringLiteral("tarnwick-sim")),
                  {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                   QStringLiteral("--announce-to"),
                   QStringLiteral("127.0.0.1:%1").arg(listener.localPort()),
                   QStringLiteral("--name"), QStringLiteral("Bench mill"),
                   QStringLiteral("--busy")});
        QVERIFY(sim.waitForReadyRead(5000));
        const QByteArray line = sim.readLine();
        QVERIFY(line.startsWith("listening on 127.0.0.1:"));
        const QByteArray port = line.trimmed().mid(23);
        QVERIFY(port.toUInt() > 0);

        QTRY_VERIFY_WITH_TIMEOUT(listener.hasPendingDatagrams(), 3000);
        QByteArray datagram(int(listener.pendingDatagramSize()), Qt::Uninitialized);
        listener.readDatagram(datagram.data(), datagram.size());
        QCOMPARE(datagram, QByteArray("Bench mill,127.0.0.1,") + port + ",1");
        sim.kill();
        sim.waitForFinished(3000);
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
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        RawClient client;
        QVERIFY(client.connectTo(port));
        client.send(MakeraPacketType::FileStart, command);
        const auto answer = client.next();
        QVERIFY(answer);
        QCOMPARE(answer->type, MakeraPacketType::FileCancel);
        QVERIFY(sim.storedNames().isEmpty());
        QCOMPARE(
            QDir(sim.store().path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList{QStringLiteral("packets.log")});
    }

    void refusesAFileWhoseDigestDiffers() {
        SimProcess sim;
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        RawClient client;
        QVERIFY(client.connectTo(port));
        const QByteArray content(10000, 'y');
        const QByteArray wrong = md5Of("something else");
        client.send(MakeraPacketType::FileStart, "upload /sd/gcodes/y.nc\n");
        client.send(MakeraPacketType::FileMD5, wrong);
        const auto last = serve(client, content, wrong);
        QVERIFY(last);
        QCOMPARE(last->type, MakeraPacketType::FileCancel);
        QVERIFY(sim.storedNames().isEmpty());
        // The chunks it had written as they came are gone too.
        QVERIFY(QDir(sim.store().filePath(QStringLiteral("partial"))).isEmpty());
    }

    void ignoresPacketsThatAreNoPartOfAnUpload() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("t")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        RawClient client;
        QVERIFY(client.connectTo(port));
        client.send(MakeraPacketType::ControlSingle, "~");
        client.send(MakeraPacketType::ControlMulti, "play /sd/gcodes/x.nc");
        client.send(MakeraPacketType::FileData, number(1));
        QVERIFY(!client.next(500));
        // Still answering afterwards.
        client.send(MakeraPacketType::ControlMulti, "ftype");
        const auto report = client.next();
        QVERIFY(report);
        QCOMPARE(report->payload, QByteArray("ftype = t\n"));
        QCOMPARE(sim.loggedTypes(),
                 (QStringList{QStringLiteral("controlSingle"), QStringLiteral("controlMulti"),
                              QStringLiteral("fileData"), QStringLiteral("controlMulti")}));
    }
};

QTEST_GUILESS_MAIN(SimMachineTest)
#include "SimMachineTest.moc"
