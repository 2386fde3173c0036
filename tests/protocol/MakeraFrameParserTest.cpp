#include "protocol/MakeraFrameParser.h"

#include "FrameBuilding.h"

#include <QRandomGenerator>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {

const QList<quint8> packetTypes{0x81, 0x82, 0x83, 0x84, 0x85, 0x90, 0xA1, 0xA2,
                                0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6};

// What is left after a drain: nothing, a lone 0x86, or one frame that has not fully arrived.
bool holdsAtMostOneIncompleteFrame(QByteArrayView bytes) {
    if (bytes.isEmpty())
        return true;
    if (bytes.size() == 1)
        return bytes[0] == '\x86';
    if (bytes[0] != '\x86' || bytes[1] != '\x68')
        return false;
    if (bytes.size() < 4)
        return true;
    const quint16 length = readUInt16(bytes, 2).value();
    return length >= 3 && length <= 8200 && bytes.size() < length + 6;
}

struct Drained {
    QList<MakeraPacket> packets;
    bool invariantHeld = true;
};

void drain(MakeraFrameParser& parser, Drained& out) {
    while (std::optional<MakeraPacket> packet = parser.next())
        out.packets.append(*packet);
    out.invariantHeld = out.invariantHeld && holdsAtMostOneIncompleteFrame(parser.buffer());
}

// A byte stream as a controller might deliver it over a poor link, with what a correct parser
// must make of it.
struct GeneratedStream {
    QByteArray bytes;
    QList<MakeraPacket> packets;
    qint64 ignoredFrames = 0;
    qint64 resynchronisedBytes = 0;
};

class StreamGenerator {
public:
    // `maximumPayload` bounds every frame; with `headerFreeDamage`, no 0x86 is ever searched
    // inside damaged input, so a short tail of noise settles every candidate frame at the end.
    StreamGenerator(quint32 seed, qsizetype maximumPayload, bool headerFreeDamage)
        : m_random(seed)
        , m_maximumPayload(maximumPayload)
        , m_headerFreeDamage(headerFreeDamage) {}

    GeneratedStream generate(int segments) {
        GeneratedStream stream;
        qint64 frameBytes = 0;
        for (int i = 0; i < segments; ++i) {
            switch (m_random.bounded(8)) {
            case 0:
            case 1:
            case 2: {
                const MakeraPacket packet{MakeraPacketType(packetTypes[m_random.bounded(15)]),
                                          payload(false)};
                const QByteArray frame = encodedFrame(packet);
                stream.bytes += frame;
                stream.packets.append(packet);
                frameBytes += frame.size();
                break;
            }
            case 3: {
                quint8 type = 0;
                do
                    type = quint8(m_random.bounded(256));
                while (makeraPacketType(type));
                const QByteArray frame = buildFrame(type, payload(false));
                stream.bytes += frame;
                ++stream.ignoredFrames;
                frameBytes += frame.size();
                break;
            }
            case 4:
                stream.bytes += noise(m_random.bounded(1, 40));
                break;
            case 5: {
                // Sound framing, wrong checksum or wrong footer.
                const QByteArray body = payload(m_headerFreeDamage);
                const quint16 length = quint16(body.size() + 3);
                const quint8 type = packetTypes[m_random.bounded(15)];
                QByteArray frame = buildFrame(type, body);
                const quint16 good = readUInt16(frame, length + 2).value();
                if (m_random.bounded(2))
                    frame = buildFrame(length, type, body, damagedWord(good));
                else
                    frame = buildFrame(length, type, body, std::nullopt, damagedWord(0x55AA));
                stream.bytes += frame;
                break;
            }
            case 6: {
                static const QList<quint16> badLengths{0, 1, 2, 8201, 0x2100, 0xFFFF};
                const quint16 length = badLengths[m_random.bounded(badLengths.size())];
                stream.bytes += QByteArray("\x86\x68", 2);
                stream.bytes.append(char(length >> 8)).append(char(length & 0xFF));
                stream.bytes += noise(m_random.bounded(0, 12));
                break;
            }
            case 7: {
                // A frame cut short: its header and length announce more than follows.
                const QByteArray frame = encodedFrame(
                    {MakeraPacketType(packetTypes[m_random.bounded(15)]), payload(true)});
                stream.bytes += frame.first(m_random.bounded(qsizetype(2), frame.size() - 2));
                break;
            }
            }
        }
        stream.bytes += noise(m_headerFreeDamage ? m_maximumPayload + 9 : 8206);
        stream.resynchronisedBytes = stream.bytes.size() - frameBytes;
        return stream;
    }

private:
    QByteArray payload(bool headerFree) {
        const qsizetype size =
            m_random.bounded(8) == 0 ? m_maximumPayload : m_random.bounded(m_maximumPayload + 1);
        return headerFree ? noise(size) : bytes(size);
    }
    QByteArray bytes(qsizetype size) {
        QByteArray result(size, Qt::Uninitialized);
        for (char& byte : result)
            byte = char(m_random.bounded(256));
        return result;
    }
    // Random bytes without 0x86, so they never start a header.
    QByteArray noise(qsizetype size) {
        QByteArray result = bytes(size);
        for (char& byte : result) {
            if (byte == '\x86')
                byte = '\x87';
        }
        return result;
    }
    quint16 damagedWord(quint16 good) {
        quint16 word = good;
        while (word == good ||
               (m_headerFreeDamage && ((word >> 8) == 0x86 || (word & 0xFF) == 0x86)))
            word = quint16(m_random.bounded(65536));
        return word;
    }

    QRandomGenerator m_random;
    qsizetype m_maximumPayload;
    bool m_headerFreeDamage;
};

} // namespace

class MakeraFrameParserTest : public QObject {
    Q_OBJECT

private:
    const MakeraPacket status{MakeraPacketType::StatusResponse, QByteArray("ok\n")};
    const MakeraPacket end{MakeraPacketType::FileEnd, QByteArray::fromHex("000001")};

private Q_SLOTS:
    void emptyBufferYieldsNothing() {
        MakeraFrameParser parser;
        QVERIFY(!parser.next());
        QVERIFY(parser.buffer().isEmpty());
        QCOMPARE(parser.resynchronisedBytes(), 0);
        QCOMPARE(parser.ignoredFrames(), 0);
    }

    void loneByteIsKeptOnlyIfItCanStartAHeader() {
        MakeraFrameParser first;
        first.append(QByteArray(1, '\x86'));
        QVERIFY(!first.next());
        QCOMPARE(first.buffer(), QByteArrayView("\x86", 1));
        QCOMPARE(first.resynchronisedBytes(), 0);

        MakeraFrameParser other;
        other.append(QByteArray(1, '\x41'));
        QVERIFY(!other.next());
        QVERIFY(other.buffer().isEmpty());
        QCOMPARE(other.resynchronisedBytes(), 1);
    }

    void garbageBeforeAFrameIsSkipped() {
        MakeraFrameParser parser;
        parser.append(QByteArray::fromHex("010203"));
        parser.append(encodedFrame(status));
        QCOMPARE(parser.next(), status);
        QCOMPARE(parser.resynchronisedBytes(), 3);
        QVERIFY(parser.buffer().isEmpty());
    }

    void trailingHeaderByteWaitsForItsPartner() {
        MakeraFrameParser parser;
        parser.append(QByteArray::fromHex("00112233445566778986"));
        QVERIFY(!parser.next());
        QCOMPARE(parser.buffer(), QByteArrayView("\x86", 1));
        QCOMPARE(parser.resynchronisedBytes(), 9);

        parser.append(encodedFrame(end).sliced(1));
        QCOMPARE(parser.next(), end);
        QVERIFY(!parser.next());
        QCOMPARE(parser.resynchronisedBytes(), 9);
    }

    void impossibleLengthDropsOnlyTheHeader_data() {
        QTest::addColumn<QByteArray>("length");
        QTest::newRow("2") << QByteArray::fromHex("0002");
        QTest::newRow("8201") << QByteArray::fromHex("2009");
    }
    void impossibleLengthDropsOnlyTheHeader() {
        QFETCH(QByteArray, length);
        MakeraFrameParser parser;
        parser.append(QByteArray(QByteArray::fromHex("8668") + length));
        QVERIFY(!parser.next());
        QCOMPARE(parser.resynchronisedBytes(), 4);
        QVERIFY(parser.buffer().isEmpty());

        // The header goes first, then the search resumes right behind it and finds the frame.
        MakeraFrameParser searching;
        searching.append(QByteArray(QByteArray::fromHex("8668") + length + encodedFrame(status)));
        QCOMPARE(searching.next(), status);
        QCOMPARE(searching.resynchronisedBytes(), 4);
    }

    void partialFrameIsLeftUntouched() {
        const QByteArray frame = encodedFrame(status);
        for (const qsizetype cut : {2, 3, 4, 9}) {
            MakeraFrameParser partial;
            partial.append(frame.first(cut));
            QVERIFY(!partial.next());
            QCOMPARE(partial.buffer(), frame.first(cut));
            partial.append(frame.sliced(cut));
            QCOMPARE(partial.next(), status);
            QCOMPARE(partial.resynchronisedBytes(), 0);
            QVERIFY(partial.buffer().isEmpty());
        }
    }

    void damagedFrameLosesOnlyItsHeader() {
        const QByteArray good = encodedFrame(status);
        const QByteArray badChecksum = buildFrame(6, 0x90, QByteArray("abc"), 0x0102);
        const QByteArray badFooter = buildFrame(6, 0x90, QByteArray("abc"), std::nullopt, 0x55AB);
        for (const QByteArray& bad : {badChecksum, badFooter}) {
            MakeraFrameParser parser;
            parser.append(QByteArray(bad + good));
            QCOMPARE(parser.next(), status);
            QCOMPARE(parser.resynchronisedBytes(), bad.size());
            QVERIFY(!parser.next());
            QVERIFY(parser.buffer().isEmpty());
        }

        // A genuine frame that starts inside the rejected frame's span is still found.
        const QByteArray enclosing =
            buildFrame(quint16(good.size() + 3), 0xB3, good, quint16(0xBEEF));
        MakeraFrameParser parser;
        parser.append(enclosing);
        QCOMPARE(parser.next(), status);
        QVERIFY(!parser.next());
        QCOMPARE(parser.resynchronisedBytes(), enclosing.size() - good.size());
        QVERIFY(parser.buffer().isEmpty());
    }

    void unknownTypeSkipsTheWholeFrame() {
        MakeraFrameParser parser;
        // The unknown frame's payload holds a whole valid frame, which must not come out.
        parser.append(QByteArray(buildFrame(0x91, encodedFrame(end)) + encodedFrame(status)));
        QCOMPARE(parser.next(), status);
        QCOMPARE(parser.ignoredFrames(), 1);
        QCOMPARE(parser.resynchronisedBytes(), 0);
        QVERIFY(!parser.next());
        QVERIFY(parser.buffer().isEmpty());
    }

    void framesOfOnePieceComeOutInOrder() {
        MakeraFrameParser parser;
        parser.append(QByteArray(encodedFrame(status) + encodedFrame(end)));
        QCOMPARE(parser.next(), status);
        QCOMPARE(parser.next(), end);
        QVERIFY(!parser.next());
        QVERIFY(parser.buffer().isEmpty());
        QCOMPARE(parser.resynchronisedBytes(), 0);
    }

    void largestFrameAcrossManyPieces() {
        const MakeraPacket data{MakeraPacketType::FileData, QByteArray(8197, '\x86')};
        const QByteArray frame = encodedFrame(data);
        MakeraFrameParser parser;
        Drained out;
        for (qsizetype at = 0; at < frame.size(); at += 1000) {
            parser.append(frame.sliced(at, std::min<qsizetype>(1000, frame.size() - at)));
            drain(parser, out);
        }
        QVERIFY(out.invariantHeld);
        QCOMPARE(out.packets, QList<MakeraPacket>{data});
        QCOMPARE(parser.resynchronisedBytes(), 0);
    }

    // Long random streams: however they are cut, the same packets come out in order, every byte
    // is accounted for, and at most one incomplete frame is ever buffered.
    void randomStreamInRandomPieces() {
        const GeneratedStream stream = StreamGenerator(20261123, 8197, false).generate(400);
        QVERIFY(stream.packets.size() > 100);
        QVERIFY(stream.ignoredFrames > 20);

        QRandomGenerator random(99);
        for (int round = 0; round < 4; ++round) {
            MakeraFrameParser parser;
            Drained out;
            for (qsizetype at = 0; at < stream.bytes.size();) {
                const qsizetype piece =
                    std::min(stream.bytes.size() - at, qsizetype(random.bounded(1, 70000)));
                parser.append(QByteArrayView(stream.bytes).sliced(at, piece));
                drain(parser, out);
                at += piece;
            }
            QVERIFY(out.invariantHeld);
            QCOMPARE(out.packets, stream.packets);
            QCOMPARE(parser.ignoredFrames(), stream.ignoredFrames);
            QCOMPARE(parser.resynchronisedBytes(), stream.resynchronisedBytes);
            QVERIFY(parser.buffer().isEmpty());
        }
    }

    void randomStreamOneByteAtATime() {
        const GeneratedStream stream = StreamGenerator(314159, 8197, false).generate(120);
        MakeraFrameParser parser;
        Drained out;
        qint64 largestBuffer = 0;
        for (const char byte : stream.bytes) {
            parser.append(QByteArrayView(&byte, 1));
            drain(parser, out);
            largestBuffer = std::max(largestBuffer, qint64(parser.buffer().size()));
        }
        QVERIFY(out.invariantHeld);
        QVERIFY(largestBuffer <= 8205);
        QCOMPARE(out.packets, stream.packets);
        QCOMPARE(parser.ignoredFrames(), stream.ignoredFrames);
        QCOMPARE(parser.resynchronisedBytes(), stream.resynchronisedBytes);
    }

    void shortStreamCutAtEveryBoundary() {
        const GeneratedStream stream = StreamGenerator(2718, 24, true).generate(60);
        QVERIFY(!stream.packets.isEmpty());
        for (qsizetype cut = 0; cut <= stream.bytes.size(); ++cut) {
            MakeraFrameParser parser;
            Drained out;
            parser.append(QByteArrayView(stream.bytes).first(cut));
            drain(parser, out);
            parser.append(QByteArrayView(stream.bytes).sliced(cut));
            drain(parser, out);
            QVERIFY2(out.invariantHeld, qPrintable(QString::number(cut)));
            QCOMPARE(out.packets, stream.packets);
            QCOMPARE(parser.ignoredFrames(), stream.ignoredFrames);
            QCOMPARE(parser.resynchronisedBytes(), stream.resynchronisedBytes);
        }
    }
};

QTEST_GUILESS_MAIN(MakeraFrameParserTest)
#include "MakeraFrameParserTest.moc"
