#include "protocol/MakeraFrameParser.h"

#include <QRandomGenerator>
#include <QTest>

using namespace tarnwick;

namespace {

const QList<int> packetTypes{0x81, 0x82, 0x83, 0x84, 0x85, 0x90, 0xA1, 0xA2,
                             0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6};

// Laid out field by field, so that any one field can be damaged.
QByteArray buildFrame(int type, const QByteArray& payload, std::optional<quint16> length = {},
                      std::optional<quint16> checksum = {}, quint16 footer = 0x55AA) {
    const quint16 l = length.value_or(quint16(payload.size() + 3));
    QByteArray frame = QByteArray::fromHex("8668");
    frame.append(char(l >> 8)).append(char(l & 0xFF)).append(char(type)).append(payload);
    const quint16 crc = checksum.value_or(CRC16CCITT::checksum(frame.sliced(2)));
    frame.append(char(crc >> 8)).append(char(crc & 0xFF));
    return frame.append(char(footer >> 8)).append(char(footer & 0xFF));
}

QByteArray randomBytes(QRandomGenerator& random, qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

// Bit by bit, from the polynomial alone.
quint16 bitwiseChecksum(QByteArrayView bytes) {
    quint16 crc = 0;
    for (const char byte : bytes) {
        crc ^= quint16(quint8(byte) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) ? quint16((crc << 1) ^ 0x1021) : quint16(crc << 1);
    }
    return crc;
}

// The packets cut, or none once the parser keeps more than a lone 0x86 or one incomplete frame.
QList<MakeraPacket> feed(MakeraFrameParser& parser, const QByteArrayList& pieces) {
    QList<MakeraPacket> packets;
    for (const QByteArray& piece : pieces) {
        parser.append(piece);
        while (std::optional<MakeraPacket> packet = parser.next())
            packets.append(*packet);
        const QByteArrayView kept = parser.buffer();
        const quint16 length = kept.size() < 4 ? 3 : readUInt16(kept, 2).value();
        if (kept.size() > 1 ? !kept.startsWith("\x86\x68") || length < 3 || length > 8200 ||
                                  kept.size() >= length + 6
                            : kept.size() == 1 && kept[0] != '\x86')
            return {};
    }
    return packets;
}

} // namespace

class MakeraFramingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodesWholeFramesUpToTheSizeLimit() {
        const MakeraPacket cancel{MakeraPacketType::FileCancel, {}};
        const MakeraPacket retry{MakeraPacketType::FileRetry, QByteArray(1, 1)};
        QCOMPARE(cancel.encoded().value().toHex(' '), "86 68 00 03 b5 a2 2d 55 aa");
        QCOMPARE(retry.encoded().value().toHex(' '), "86 68 00 04 b6 01 78 4a 55 aa");
        const QByteArray largest(8197, '\x86');
        QCOMPARE(MakeraPacket({MakeraPacketType::FileData, largest}).encoded().value(),
                 buildFrame(0xB3, largest));
        QCOMPARE(MakeraPacket({MakeraPacketType::FileData, largest + 'x'}).encoded().error(),
                 Error(MakeraPacketError::oversized(8201)));
    }

    void checksumMatchesABitwiseReference() {
        QCOMPARE(CRC16CCITT::checksum(QByteArrayView("123456789")), quint16(0x31C3));
        QRandomGenerator random(1234);
        const QByteArray data = randomBytes(random, 9000);
        for (qsizetype length = 0; length <= 1000; ++length) { // at every alignment, from empty
            const qsizetype offset = length % 16;
            const QByteArrayView piece = QByteArrayView(data).sliced(offset, length);
            QCOMPARE(CRC16CCITT::checksum(piece), bitwiseChecksum(piece));
            QCOMPARE(CRC16CCITT::extend(CRC16CCITT::checksum(data.first(offset)), piece),
                     bitwiseChecksum(data.first(offset + length)));
        }
        QCOMPARE(CRC16CCITT::checksum(data), bitwiseChecksum(data));
    }

    // Each input also fails every later check, so only the first failing check can name it.
    void decodeErrorsInCheckOrder_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<Error>("expected");
        using E = MakeraPacketError;
        const auto row = [](const char* name, const QByteArray& input, E error) {
            QTest::newRow(name) << input << Error(error);
        };
        row("size", QByteArray::fromHex("6886000000000000"), E::truncated());
        row("header", QByteArray::fromHex("688600000000000000"), E::invalidHeader(0x6886));
        row("length 2", buildFrame(0xB5, "abc", 2), E::invalidLength(2));
        row("length 8201", buildFrame(0xB5, "abc", 8201), E::invalidLength(8201));
        row("size for length", buildFrame(0xB5, "abc", 7, 0, 0), E::truncated());
        row("footer", buildFrame(0x91, "abc", {}, 0x0102, 0x55AB), E::invalidFooter(0x55AB));
        row("checksum", buildFrame(0x91, "abc", {}, 0x0102),
            E::checksum(bitwiseChecksum(QByteArray::fromHex("000691616263")), 0x0102));
        row("type", buildFrame(0x91, "abc"), E::unknownType(0x91));
    }
    void decodeErrorsInCheckOrder() {
        QFETCH(QByteArray, input);
        const Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(input);
        QTEST(decoded.ok() ? Error() : decoded.error(), "expected");
    }

    void exactlyFifteenTypeBytes() {
        QList<int> types;
        for (int raw = 0; raw < 256; ++raw)
            if (const std::optional<MakeraPacketType> type = makeraPacketType(quint8(raw)))
                types.append(int(*type) == raw ? raw : -raw);
        QCOMPARE(types, packetTypes);
    }

    void parserResynchronises_data() {
        QTest::addColumn<QByteArrayList>("pieces");
        QTest::addColumn<QList<qint64>>("droppedAndIgnored");
        const auto row = [](const char* name, const QByteArrayList& pieces, qint64 dropped,
                            qint64 ignored = 0) {
            QTest::newRow(name) << pieces << QList<qint64>{dropped, ignored};
        };
        const QByteArray good = buildFrame(0x81, "ok\n");
        row("trailing 0x86 kept", {QByteArray::fromHex("4186"), good.sliced(1)}, 1);
        row("bad length drops only the header", {"\x86\x68" + good}, 2);
        row("bad checksum", {buildFrame(0x90, "abc", {}, 0x0102) + good}, 12);
        row("bad footer", {buildFrame(0x90, "abc", {}, {}, 0x55AB), good}, 12);
        row("frame inside a damaged one", {buildFrame(0xB3, good, {}, 0xBEEF)}, 9);
        row("unknown type skipped whole", {buildFrame(0x91, buildFrame(0xB4, {})) + good}, 0, 1);
    }
    void parserResynchronises() {
        QFETCH(QByteArrayList, pieces);
        MakeraFrameParser parser;
        QCOMPARE(feed(parser, pieces),
                 (QList<MakeraPacket>{{MakeraPacketType::StatusResponse, "ok\n"}}));
        QTEST((QList<qint64>{parser.resynchronisedBytes(), parser.ignoredFrames()}),
              "droppedAndIgnored");
        QVERIFY(parser.buffer().isEmpty());
    }

    // Cut in any pieces, a stream of sound, damaged and unknown frames and noise gives the same
    // packets in order, with every byte accounted for.
    void parserTakesARandomStreamInAnyPieces() {
        QRandomGenerator random(20261123);
        QByteArray stream;
        QList<MakeraPacket> expected;
        qint64 ignored = 0, frameBytes = 0;
        for (int segment = 0; segment < 400; ++segment) {
            const int type =
                random.bounded(4) ? packetTypes[random.bounded(15)] : random.bounded(256);
            const QByteArray payload =
                randomBytes(random, random.bounded(8) ? random.bounded(8198) : 8197);
            QByteArray frame = buildFrame(type, payload);
            const int kind = random.bounded(5);
            if (kind == 0) // a wrong checksum or footer byte
                frame[frame.size() - 1 - random.bounded(4)] ^= char(random.bounded(1, 256));
            else if (kind == 1) // cut short
                frame.truncate(random.bounded(qsizetype(2), frame.size() - 2));
            else if (kind == 2) // an impossible length and noise
                frame = QByteArray::fromHex(random.bounded(2) ? "86680002" : "86682009") +
                        randomBytes(random, random.bounded(40));
            else if (const std::optional<MakeraPacketType> known = makeraPacketType(quint8(type)))
                expected.append({*known, payload});
            else
                ++ignored;
            frameBytes += kind > 2 ? frame.size() : 0;
            stream += frame;
        }
        stream += QByteArray(8206, '\0'); // settles any frame still awaited
        QVERIFY(expected.size() > 100 && ignored > 20);

        for (const int largestPiece : {1, 100, 70000}) {
            QByteArrayList pieces;
            for (qsizetype at = 0; at < stream.size(); at += pieces.back().size())
                pieces.append(stream.mid(at, random.bounded(1, largestPiece + 1)));
            MakeraFrameParser parser;
            QCOMPARE(feed(parser, pieces), expected);
            QCOMPARE(parser.ignoredFrames(), ignored);
            QCOMPARE(parser.resynchronisedBytes(), stream.size() - frameBytes);
            QVERIFY(parser.buffer().isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(MakeraFramingTest)
#include "MakeraFramingTest.moc"
