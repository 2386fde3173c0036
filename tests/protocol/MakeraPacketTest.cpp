#include "protocol/MakeraPacket.h"

#include "FrameBuilding.h"

#include <QRandomGenerator>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {

// Bit-by-bit CRC-16/XMODEM, written from the polynomial alone, to check the table-driven one.
quint16 bitwiseChecksum(QByteArrayView bytes) {
    quint16 crc = 0;
    for (const char byte : bytes) {
        crc ^= quint16(quint8(byte) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) ? quint16((crc << 1) ^ 0x1021) : quint16(crc << 1);
    }
    return crc;
}

QByteArray randomBytes(QRandomGenerator& random, qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

Error decodeError(const QByteArray& frame) {
    const Result<MakeraPacket> result = MakeraPacketDecoder::decode(frame);
    if (result.ok())
        return UploadError::invalidResponse(QStringLiteral("decoded unexpectedly"));
    return result.error();
}

} // namespace

class MakeraPacketTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void exampleFramesByteForByte_data() {
        QTest::addColumn<MakeraPacket>("packet");
        QTest::addColumn<QByteArray>("frame");
        QTest::newRow("fileCancel, empty") << MakeraPacket{MakeraPacketType::FileCancel, {}}
                                           << QByteArray::fromHex("86680003B5A22D55AA");
        QTest::newRow("fileRetry 01") << MakeraPacket{MakeraPacketType::FileRetry, QByteArray(1, 1)}
                                      << QByteArray::fromHex("86680004B601784A55AA");
    }
    void exampleFramesByteForByte() {
        QFETCH(MakeraPacket, packet);
        QFETCH(QByteArray, frame);
        const Result<QByteArray> encoded = packet.encoded();
        QVERIFY(encoded.ok());
        QCOMPARE(encoded.value().toHex(' '), frame.toHex(' '));

        const Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(frame);
        QVERIFY(decoded.ok());
        QCOMPARE(decoded.value(), packet);
    }

    void everyTypeRoundTrips() {
        QRandomGenerator random(7);
        for (const quint8 raw : {0x81, 0x82, 0x83, 0x84, 0x85, 0x90, 0xA1, 0xA2, 0xB0, 0xB1, 0xB2,
                                 0xB3, 0xB4, 0xB5, 0xB6}) {
            const MakeraPacket packet{MakeraPacketType(raw),
                                      randomBytes(random, random.bounded(1, 300))};
            const QByteArray frame = packet.encoded().value();
            QCOMPARE(frame.size(), packet.payload.size() + 9);
            QCOMPARE(quint8(frame[4]), raw);
            QCOMPARE(frame.mid(5, packet.payload.size()), packet.payload);
            QCOMPARE(MakeraPacketDecoder::decode(frame).value(), packet);
        }
    }

    void payloadSizeLimit() {
        const MakeraPacket largest{MakeraPacketType::FileData, QByteArray(8197, '\x86')};
        const Result<QByteArray> frame = largest.encoded();
        QVERIFY(frame.ok());
        QCOMPARE(frame.value().size(), 8206);
        QCOMPARE(frame.value().sliced(0, 4), QByteArray::fromHex("86682008"));
        QCOMPARE(frame.value().last(2), QByteArray::fromHex("55AA"));
        QCOMPARE(MakeraPacketDecoder::decode(frame.value()).value(), largest);

        const MakeraPacket tooLarge{MakeraPacketType::FileData, QByteArray(8198, 'x')};
        QCOMPARE(tooLarge.encoded().error(), Error(MakeraPacketError::oversized(8201)));
        const MakeraPacket muchTooLarge{MakeraPacketType::FileData, QByteArray(70000, 'x')};
        QCOMPARE(muchTooLarge.encoded().error(), Error(MakeraPacketError::oversized(70003)));
    }

    void checksumValues() {
        QCOMPARE(CRC16CCITT::checksum(QByteArrayView("123456789")), quint16(0x31C3));
        QCOMPARE(CRC16CCITT::checksum(QByteArrayView()), quint16(0));
        QCOMPARE(CRC16CCITT::checksum(QByteArray(1, '\x01')), quint16(0x1021));
        QCOMPARE(CRC16CCITT::checksum(QByteArray(1, '\xFF')), quint16(0x1EF0));
        QCOMPARE(CRC16CCITT::checksum(QByteArray::fromHex("0003B5")), quint16(0xA22D));
    }

    void checksumMatchesBitwiseAtEveryLengthAndAlignment() {
        QRandomGenerator random(1234);
        const QByteArray data = randomBytes(random, 9000);
        for (qsizetype offset = 0; offset < 16; ++offset) {
            for (qsizetype length = 0; length <= 80; ++length) {
                const QByteArrayView piece(data.constData() + offset, length);
                QCOMPARE(CRC16CCITT::checksum(piece), bitwiseChecksum(piece));
            }
        }
        QCOMPARE(CRC16CCITT::checksum(data), bitwiseChecksum(data));
        QCOMPARE(CRC16CCITT::checksum(QByteArray(8200, '\xFF')),
                 bitwiseChecksum(QByteArray(8200, '\xFF')));
    }

    void decodeErrorsInCheckOrder_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<Error>("expected");
        const QByteArray valid = buildFrame(0xB4, QByteArray("\x01\x02\x03", 3));

        QTest::newRow("empty") << QByteArray() << Error(MakeraPacketError::truncated());
        QTest::newRow("eight bytes, header not looked at")
            << QByteArray::fromHex("6886000300000000") << Error(MakeraPacketError::truncated());
        QTest::newRow("header 68 86") << QByteArray(QByteArray::fromHex("6886") + valid.sliced(2))
                                      << Error(MakeraPacketError::invalidHeader(0x6886));
        QTest::newRow("header 86 69") << QByteArray::fromHex("86690003B5A22D55AA")
                                      << Error(MakeraPacketError::invalidHeader(0x8669));
        for (const quint16 length : {0, 1, 2, 8201, 0xFFFF}) {
            QTest::addRow("length %d", length) << buildFrame(length, 0xB5, QByteArray(16, 'a'))
                                               << Error(MakeraPacketError::invalidLength(length));
        }
        QTest::newRow("length 8 with 13 bytes")
            << buildFrame(8, 0xB5, QByteArray(5, 'a')).chopped(1)
            << Error(MakeraPacketError::truncated());
        QTest::newRow("length 8200 with 9 bytes")
            << QByteArray::fromHex("86682008B500000000") << Error(MakeraPacketError::truncated());
        QTest::newRow("footer 55 AB, checksum also wrong")
            << buildFrame(6, 0xB3, QByteArray(3, 'z'), 0x1234, 0x55AB)
            << Error(MakeraPacketError::invalidFooter(0x55AB));
        QTest::newRow("footer AA 55") << buildFrame(3, 0xB5, {}, std::nullopt, 0xAA55)
                                      << Error(MakeraPacketError::invalidFooter(0xAA55));

        QByteArray altered = valid;
        altered[6] = char(altered[6] ^ 0x40);
        const quint16 stored = quint16((quint8(valid[8]) << 8) | quint8(valid[9]));
        QTest::newRow("payload byte changed")
            << altered
            << Error(
                   MakeraPacketError::checksum(CRC16CCITT::checksum(altered.sliced(2, 6)), stored));
        QTest::newRow("stored checksum wrong, unknown type")
            << buildFrame(3, 0x91, {}, 0x0000)
            << Error(MakeraPacketError::checksum(
                   CRC16CCITT::checksum(QByteArray::fromHex("000391")), 0x0000));
        QTest::newRow("unknown type 91")
            << buildFrame(0x91, QByteArray("abc")) << Error(MakeraPacketError::unknownType(0x91));
        QTest::newRow("unknown type 00")
            << buildFrame(0x00, {}) << Error(MakeraPacketError::unknownType(0x00));
    }
    void decodeErrorsInCheckOrder() {
        QFETCH(QByteArray, input);
        QFETCH(Error, expected);
        QCOMPARE(decodeError(input), expected);
    }

    void lengthBoundsPassTheLengthCheck() {
        const QByteArray smallest = buildFrame(3, 0xB0, {});
        QCOMPARE(MakeraPacketDecoder::decode(smallest).value(),
                 (MakeraPacket{MakeraPacketType::FileStart, {}}));
        const QByteArray largest = buildFrame(8200, 0xB3, QByteArray(8197, '\x55'));
        QCOMPARE(MakeraPacketDecoder::decode(largest).value(),
                 (MakeraPacket{MakeraPacketType::FileData, QByteArray(8197, '\x55')}));
    }

    void trailingBytesAreIgnored() {
        const MakeraPacket packet{MakeraPacketType::FileView, QByteArray("\x86\x68\x55\xAA", 4)};
        const QByteArray frame = packet.encoded().value();
        QCOMPARE(MakeraPacketDecoder::decode(QByteArray(frame + QByteArray::fromHex("86680003B5")))
                     .value(),
                 packet);
        QCOMPARE(MakeraPacketDecoder::decode(QByteArray(frame + frame)).value(), packet);

        const QByteArray unknown = buildFrame(0x91, QByteArray("x"));
        QCOMPARE(decodeError(QByteArray(unknown + QByteArray(20, '\0'))),
                 Error(MakeraPacketError::unknownType(0x91)));
    }

    void exactlyFifteenTypeBytes() {
        const QList<quint8> expected{0x81, 0x82, 0x83, 0x84, 0x85, 0x90, 0xA1, 0xA2,
                                     0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6};
        QList<quint8> found;
        for (int raw = 0; raw < 256; ++raw) {
            const std::optional<MakeraPacketType> type = makeraPacketType(quint8(raw));
            if (type) {
                QCOMPARE(quint8(*type), quint8(raw));
                found.append(quint8(raw));
            }
        }
        QCOMPARE(found, expected);
    }

    void bigEndianReaders() {
        const QByteArray bytes = QByteArray::fromHex("0102A3B4C5");
        QCOMPARE(readUInt16(bytes, 0).value(), quint16(0x0102));
        QCOMPARE(readUInt16(bytes, 3).value(), quint16(0xB4C5));
        QCOMPARE(readUInt32(bytes, 0).value(), quint32(0x0102A3B4));
        QCOMPARE(readUInt32(bytes, 1).value(), quint32(0x02A3B4C5));

        const Error truncated = MakeraPacketError::truncated();
        QCOMPARE(readUInt16(bytes, 4).error(), truncated);
        QCOMPARE(readUInt16(bytes, -1).error(), truncated);
        QCOMPARE(readUInt16(QByteArrayView(), 0).error(), truncated);
        QCOMPARE(readUInt16(bytes, std::numeric_limits<qsizetype>::max()).error(), truncated);
        QCOMPARE(readUInt32(bytes, 2).error(), truncated);
        QCOMPARE(readUInt32(bytes, -3).error(), truncated);
        QCOMPARE(readUInt32(bytes.first(3), 0).error(), truncated);
        QCOMPARE(readUInt32(bytes, std::numeric_limits<qsizetype>::max()).error(), truncated);
    }
};

QTEST_GUILESS_MAIN(MakeraPacketTest)
#include "MakeraPacketTest.moc"
