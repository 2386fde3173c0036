#include "transfer/MakeraUploadSession.h"

#include <QCryptographicHash>
#include <QTest>

using namespace tarnwick;

namespace {

using Event = MakeraUploadSession::Event;

QByteArray patterned(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char((i * 7 + i / 251) & 0xFF);
    return bytes;
}

MakeraPacket request(MakeraPacketType type, QByteArray payload = {}) {
    return {type, std::move(payload)};
}

MakeraPacket chunkRequest(quint32 n) {
    const char bytes[4] = {char(n >> 24), char(n >> 16), char(n >> 8), char(n)};
    return request(MakeraPacketType::FileData, QByteArray(bytes, 4));
}

// The reply the session gives, which must be a packet to send.
MakeraPacket reply(MakeraUploadSession& session, const MakeraPacket& packet) {
    const auto result = session.receive(packet);
    if (!result.ok())
        qFatal("unexpected failure: %s", qPrintable(result.error().description()));
    if (!result.value() || result.value()->kind != Event::Kind::Send || !result.value()->packet)
        qFatal("no packet to send");
    return *result.value()->packet;
}

} // namespace

class UploadSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void servesTheTwentyThousandByteExample() {
        const QByteArray file = patterned(20000);
        MakeraUploadSession session(file, QStringLiteral("part.nc"));
        QCOMPARE(session.chunkCount(), 3);

        const MakeraPacket view = reply(session, request(MakeraPacketType::FileView));
        QCOMPARE(view.type, MakeraPacketType::FileView);
        QCOMPARE(view.payload, QByteArray::fromHex("000000032000"));

        const MakeraPacket third = reply(session, chunkRequest(3));
        QCOMPARE(third.type, MakeraPacketType::FileData);
        QCOMPARE(third.payload, QByteArray::fromHex("00000003") + file.right(3616));
        QCOMPARE(third.payload.size(), 4 + 3616);
        QCOMPARE(session.highestSequence(), 3);
        QCOMPARE(session.bytesSent(), 20000);

        const MakeraPacket first = reply(session, chunkRequest(1));
        QCOMPARE(first.payload, QByteArray::fromHex("00000001") + file.left(8192));
        QCOMPARE(session.highestSequence(), 3);
        QCOMPARE(*session.lastPacket(), first);
    }

    void chunkBoundaries() {
        const QByteArray exact = patterned(16384);
        MakeraUploadSession two(exact, QStringLiteral("a.nc"));
        QCOMPARE(two.chunkCount(), 2);
        QCOMPARE(reply(two, chunkRequest(2)).payload,
                 QByteArray::fromHex("00000002") + exact.mid(8192));
        QCOMPARE(reply(two, request(MakeraPacketType::FileView)).payload,
                 QByteArray::fromHex("000000022000"));

        const QByteArray oneMore = patterned(16385);
        MakeraUploadSession three(oneMore, QStringLiteral("b.nc"));
        QCOMPARE(three.chunkCount(), 3);
        QCOMPARE(reply(three, chunkRequest(3)).payload,
                 QByteArray::fromHex("00000003") + oneMore.right(1));
        QCOMPARE(reply(three, chunkRequest(2)).payload.size(), 4 + 8192);

        MakeraUploadSession small(QByteArray("G0 X1\n"), QStringLiteral("c.nc"), 4);
        QCOMPARE(small.chunkCount(), 2);
        QCOMPARE(reply(small, request(MakeraPacketType::FileView)).payload,
                 QByteArray::fromHex("000000020004"));
        QCOMPARE(reply(small, chunkRequest(2)).payload, QByteArray::fromHex("00000002") + "1\n");
    }

    void refusesChunksOutsideTheFile() {
        MakeraUploadSession session(patterned(20000), QStringLiteral("part.nc"));
        reply(session, chunkRequest(2));
        const MakeraPacket before = *session.lastPacket();

        const auto zero = session.receive(chunkRequest(0));
        QCOMPARE(zero.error(), Error(UploadError::invalidResponse(
                                   QStringLiteral("Requested chunk 0 is outside 1...3."))));
        const auto beyond = session.receive(chunkRequest(4));
        QCOMPARE(beyond.error(), Error(UploadError::invalidResponse(
                                     QStringLiteral("Requested chunk 4 is outside 1...3."))));
        QCOMPARE(beyond.error().description(),
                 QStringLiteral("The machine returned an invalid response: Requested chunk 4 is "
                                "outside 1...3."));
        const auto huge = session.receive(chunkRequest(0xFFFFFFFF));
        QCOMPARE(huge.error(), Error(UploadError::invalidResponse(QStringLiteral(
                                   "Requested chunk 4294967295 is outside 1...3."))));
        // A refused request changes nothing.
        QCOMPARE(*session.lastPacket(), before);
        QCOMPARE(session.highestSequence(), 2);

        MakeraUploadSession empty(QByteArray(), QStringLiteral("empty.nc"));
        QCOMPARE(empty.chunkCount(), 0);
        QCOMPARE(empty.receive(chunkRequest(1)).error(),
                 Error(UploadError::invalidResponse(
                     QStringLiteral("Requested chunk 1 is outside 1...0."))));
    }

    void readsOnlyTheFirstFourBytesOfAChunkRequest() {
        const QByteArray file = patterned(20000);
        MakeraUploadSession session(file, QStringLiteral("part.nc"));
        const MakeraPacket longer =
            request(MakeraPacketType::FileData, QByteArray::fromHex("00000002FFFFFFFF01"));
        QCOMPARE(reply(session, longer).payload,
                 QByteArray::fromHex("00000002") + file.mid(8192, 8192));

        for (const QByteArray& shortPayload :
             {QByteArray(), QByteArray::fromHex("00"), QByteArray::fromHex("000001")}) {
            const auto result = session.receive(request(MakeraPacketType::FileData, shortPayload));
            QCOMPARE(result.error(), Error(MakeraPacketError::truncated()));
        }
        QCOMPARE(session.highestSequence(), 2);
    }

    void answersTheMD5RequestWithTheDigestOnce() {
        const QByteArray file = patterned(20000);
        const QByteArray expected = QCryptographicHash::hash(file, QCryptographicHash::Md5).toHex();
        MakeraUploadSession session(file, QStringLiteral("part.nc"));
        QCOMPARE(session.md5(), expected);
        const MakeraPacket md5 = reply(session, request(MakeraPacketType::FileMD5, "ignored"));
        QCOMPARE(md5, (MakeraPacket{MakeraPacketType::FileMD5, expected}));
        QCOMPARE(md5.payload.size(), 32);

        // Known digests: the lowercase text of RFC 1321's test suite.
        QCOMPARE(MakeraUploadSession::md5Hex("abc"),
                 QByteArray("900150983cd24fb0d6963f7d28e17f72"));
        QCOMPARE(MakeraUploadSession(QByteArray("abc"), QStringLiteral("x.nc")).md5(),
                 QByteArray("900150983cd24fb0d6963f7d28e17f72"));

        // A digest taken earlier (off the main thread) is used as it is, not taken again.
        MakeraUploadSession given(file, QStringLiteral("part.nc"), 8192, expected);
        QCOMPARE(reply(given, request(MakeraPacketType::FileMD5)).payload, expected);
    }

    void retryRepeatsTheLastReply() {
        const QByteArray file = patterned(20000);
        MakeraUploadSession session(file, QStringLiteral("part.nc"));

        QCOMPARE(session.receive(request(MakeraPacketType::FileRetry)).error(),
                 Error(UploadError::invalidResponse(
                     QStringLiteral("Retry arrived before any transfer packet."))));

        const MakeraPacket opening{MakeraPacketType::FileMD5, session.md5()};
        session.setLastPacket(opening);
        QCOMPARE(reply(session, request(MakeraPacketType::FileRetry)), opening);

        const MakeraPacket md5 = reply(session, request(MakeraPacketType::FileMD5));
        QCOMPARE(reply(session, request(MakeraPacketType::FileRetry)), md5);

        const MakeraPacket view = reply(session, request(MakeraPacketType::FileView));
        QCOMPARE(reply(session, request(MakeraPacketType::FileRetry, "\x01")), view);

        const MakeraPacket chunk = reply(session, chunkRequest(2));
        QCOMPARE(reply(session, request(MakeraPacketType::FileRetry)), chunk);
        QCOMPARE(reply(session, request(MakeraPacketType::FileRetry)), chunk);
        QCOMPARE(session.highestSequence(), 2);
    }

    void viewRequestStartsTheProgressOver() {
        MakeraUploadSession session(patterned(20000), QStringLiteral("part.nc"));
        reply(session, chunkRequest(1));
        reply(session, chunkRequest(2));
        QCOMPARE(session.bytesSent(), 16384);
        reply(session, request(MakeraPacketType::FileView));
        QCOMPARE(session.highestSequence(), 0);
        QCOMPARE(session.bytesSent(), 0);
        reply(session, chunkRequest(1));
        QCOMPARE(session.highestSequence(), 1);
    }

    void reportsEndAndCancelAndIgnoresInformation() {
        MakeraUploadSession session(patterned(100), QStringLiteral("part.nc"));
        const MakeraPacket chunk = reply(session, chunkRequest(1));

        const auto end = session.receive(request(MakeraPacketType::FileEnd, "x"));
        QCOMPARE(end.value(), std::optional(Event::finished()));
        const auto cancel = session.receive(request(MakeraPacketType::FileCancel));
        QCOMPARE(cancel.value(), std::optional(Event::cancelled()));

        for (MakeraPacketType type :
             {MakeraPacketType::StatusResponse, MakeraPacketType::DiagnosticResponse,
              MakeraPacketType::LoadInfo, MakeraPacketType::LoadFinished,
              MakeraPacketType::LoadError, MakeraPacketType::NormalInfo,
              MakeraPacketType::ControlSingle, MakeraPacketType::ControlMulti,
              MakeraPacketType::FileStart}) {
            const auto result = session.receive(request(type, "ok\n"));
            QVERIFY(result.ok());
            QVERIFY(!result.value().has_value());
        }
        QCOMPARE(*session.lastPacket(), chunk);
        QCOMPARE(session.highestSequence(), 1);
    }
};

QTEST_GUILESS_MAIN(UploadSessionTest)
#include "UploadSessionTest.moc"
