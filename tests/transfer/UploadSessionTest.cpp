#include "support/TestFiles.h"
#include "transfer/MakeraCapability.h"
#include "transfer/MakeraFilename.h"
#include "transfer/MakeraUploadSession.h"

#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

namespace {

using Event = MakeraUploadSession::Event;

MakeraPacket request(MakeraPacketType type, QByteArray payload = {}) {
    return {type, std::move(payload)};
}

MakeraPacket chunkRequest(quint32 n) {
    const char bytes[4] = {char(n >> 24), char(n >> 16), char(n >> 8), char(n)};
    return request(MakeraPacketType::FileData, QByteArray(bytes, 4));
}

MakeraUploadSession sessionFor(const QByteArray& file, qint64 chunkSize = 8192) {
    return MakeraUploadSession(file.size(), QStringLiteral("part.nc"),
                               MakeraUploadSession::md5Hex(file), chunkSize);
}

// The reply to a request, as the uploader builds it: a chunk request is served from `file`. A
// failure or a request without a reply throws, which fails the test.
MakeraPacket reply(MakeraUploadSession& session, const QByteArray& file,
                   const MakeraPacket& packet) {
    const Event event = session.receive(packet).value().value();
    if (event.kind != Event::Kind::ReadChunk)
        return event.packet.value();
    const qint64 size = session.chunkSize();
    return session.chunkReply(event.chunk, file.mid((event.chunk - 1) * size, size));
}

} // namespace

class UploadSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void servesChunksAndTheView_data() {
        QTest::addColumn<qsizetype>("size");
        QTest::addColumn<qint64>("chunkSize");
        QTest::addColumn<quint32>("chunk");
        QTest::addColumn<QByteArray>("view");
        QTest::addColumn<qsizetype>("chunkStart");
        QTest::addColumn<qsizetype>("chunkBytes");
        const auto row = [](const char* name, qsizetype size, qint64 chunkSize, quint32 chunk,
                            const char* view, qsizetype chunkStart, qsizetype chunkBytes) {
            QTest::newRow(name) << size << chunkSize << chunk << QByteArray::fromHex(view)
                                << chunkStart << chunkBytes;
        };
        row("20000 bytes, last chunk", 20000, 8192, 3, "000000032000", 16384, 3616);
        row("20000 bytes, first chunk", 20000, 8192, 1, "000000032000", 0, 8192);
        row("exactly two chunks", 16384, 8192, 2, "000000022000", 8192, 8192);
        row("one byte more", 16385, 8192, 3, "000000032000", 16384, 1);
        row("small chunks", 6, 4, 2, "000000020004", 4, 2);
    }
    void servesChunksAndTheView() {
        QFETCH(qsizetype, size);
        QFETCH(qint64, chunkSize);
        QFETCH(quint32, chunk);
        const QByteArray file = patterned(size);
        MakeraUploadSession session = sessionFor(file, chunkSize);
        const MakeraPacket data = reply(session, file, chunkRequest(chunk));
        QCOMPARE(data.type, MakeraPacketType::FileData);
        QFETCH(qsizetype, chunkStart);
        QFETCH(qsizetype, chunkBytes);
        QCOMPARE(data.payload, chunkRequest(chunk).payload + file.mid(chunkStart, chunkBytes));
        QCOMPARE(session.highestSequence(), chunk);
        QCOMPARE(*session.lastPacket(), data);
        QTEST(reply(session, file, request(MakeraPacketType::FileView)).payload, "view");
        // A view request starts the progress over.
        QCOMPARE(session.highestSequence(), 0);
        QCOMPARE(session.bytesSent(), 0);
    }

    void refusesRequestsOutsideTheFile() {
        const QByteArray file = patterned(20000);
        MakeraUploadSession session = sessionFor(file);
        reply(session, file, chunkRequest(2));
        const MakeraPacket before = *session.lastPacket();
        const auto outside = [](const QString& text) {
            return Error(UploadError::invalidResponse(text));
        };

        for (const quint32 chunk : {0u, 4u, 0xFFFFFFFFu})
            QCOMPARE(session.receive(chunkRequest(chunk)).error(),
                     outside(u"Requested chunk %1 is outside 1...3."_s.arg(chunk)));
        for (const QByteArray& shortPayload :
             {QByteArray(), QByteArray::fromHex("00"), QByteArray::fromHex("000001")})
            QCOMPARE(session.receive(request(MakeraPacketType::FileData, shortPayload)).error(),
                     Error(MakeraPacketError::truncated()));
        QCOMPARE(*session.lastPacket(), before);
        // A longer request is read from its first four bytes.
        QCOMPARE(reply(session, file,
                       request(MakeraPacketType::FileData, QByteArray::fromHex("00000001FF01")))
                     .payload,
                 chunkRequest(1).payload + file.left(8192));
        QCOMPARE(session.highestSequence(), 2);

        MakeraUploadSession empty(0, QStringLiteral("empty.nc"), {});
        QCOMPARE(empty.chunkCount(), 0);
        QCOMPARE(empty.receive(chunkRequest(1)).error(),
                 outside(u"Requested chunk 1 is outside 1...0."_s));
    }

    // A retry repeats the last reply; every chunk counts once, until a view starts over.
    void retryRepeatsTheLastReplyAndEveryChunkCountsOnce() {
        const QByteArray file = patterned(20000);
        MakeraUploadSession session = sessionFor(file);
        QCOMPARE(session.receive(request(MakeraPacketType::FileRetry)).error(),
                 Error(UploadError::invalidResponse(
                     QStringLiteral("Retry arrived before any transfer packet."))));

        const MakeraPacket opening{MakeraPacketType::FileMD5, session.md5()};
        session.setLastPacket(opening);
        QCOMPARE(reply(session, file, request(MakeraPacketType::FileRetry)), opening);
        const MakeraPacket md5 = reply(session, file, request(MakeraPacketType::FileMD5, "x"));
        QCOMPARE(md5, (MakeraPacket{MakeraPacketType::FileMD5, MakeraUploadSession::md5Hex(file)}));
        for (const MakeraPacket& asked : {request(MakeraPacketType::FileView), chunkRequest(3),
                                          chunkRequest(1), chunkRequest(3)}) {
            const MakeraPacket answered = reply(session, file, asked);
            QCOMPARE(reply(session, file, request(MakeraPacketType::FileRetry, "\x01")), answered);
            QVERIFY(!session.hasServedEveryChunk());
        }
        QCOMPARE(session.highestSequence(), 3);
        reply(session, file, chunkRequest(2));
        QVERIFY(session.hasServedEveryChunk());
        QCOMPARE(session.highestSequence(), 3);
        reply(session, file, request(MakeraPacketType::FileView));
        QVERIFY(!session.hasServedEveryChunk());
    }

    void reportsEndAndCancelAndIgnoresInformation() {
        const QByteArray file = patterned(100);
        MakeraUploadSession session = sessionFor(file);
        const MakeraPacket chunk = reply(session, file, chunkRequest(1));

        QCOMPARE(session.receive(request(MakeraPacketType::FileEnd, "x")).value(),
                 std::optional(Event::finished()));
        QCOMPARE(session.receive(request(MakeraPacketType::FileCancel)).value(),
                 std::optional(Event::cancelled()));
        for (MakeraPacketType type :
             {MakeraPacketType::StatusResponse, MakeraPacketType::DiagnosticResponse,
              MakeraPacketType::LoadInfo, MakeraPacketType::LoadFinished,
              MakeraPacketType::LoadError, MakeraPacketType::NormalInfo,
              MakeraPacketType::ControlSingle, MakeraPacketType::ControlMulti,
              MakeraPacketType::FileStart})
            QCOMPARE(session.receive(request(type, "ok\n")).value(), std::optional<Event>());
        QCOMPARE(*session.lastPacket(), chunk);
        QCOMPARE(session.highestSequence(), 1);
    }

    // The command's payload, or why there is none.
    void uploadCommand_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char* name, const QByteArray& file, const QVariant& expected) {
            QTest::newRow(name) << QString::fromUtf8(file) << expected;
        };
        const auto command = [](const QByteArray& escaped) {
            return QVariant("upload /sd/gcodes/" + escaped + '\n');
        };
        const QVariant separator = QVariant::fromValue(
            Error(UploadError::rejected(u"The filename contains a path separator."_s)));
        row("plain", "part.nc", command("part.nc"));
        row("blank", "my part.nc", command("my\x01part.nc"));
        row("every escaped character", " ?*!~.nc", command("\x01\x02\x03\x04\x05.nc"));
        row("non-ASCII stays UTF-8", "Teil ü.nc", command("Teil\x01\xC3\xBC.nc"));
        row("dots inside", "...nc", command("...nc"));
        row("slash", "a/b.nc", separator);
        row("backslash", "a\\b.nc", separator);
        row("dot", ".", separator);
        row("two dots", "..", separator);
        // Each control character is refused and shown as its symbol, on one line.
        row("control characters", "a\x01\r\n\x1F\x7F\u2028\u2029.nc",
            QVariant::fromValue(Error(JobFileError::controlCharacterInName(
                u"a\u2401\u240D\u240A\u241F\u2421\u2424\u2424.nc"_s))));
        row("NUL", QByteArray("a\0.nc", 5),
            QVariant::fromValue(Error(JobFileError::controlCharacterInName(u"a\u2400.nc"_s))));
        row("no-break space stays", "a\u00A0.nc", command("a\xC2\xA0.nc"));
    }
    void uploadCommand() {
        QFETCH(QString, name);
        const Result<QByteArray> command = MakeraFilename::uploadCommand(name);
        QTEST(command ? QVariant(command.value()) : QVariant::fromValue(command.error()),
              "expected");
    }

    void fileTypeReport_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<QString>>("fileType");
        const auto row = [](const char* name, const char* text, std::optional<QString> type) {
            QTest::newRow(name) << QString::fromUtf8(text) << type;
        };
        row("blanks and line feed", "ok ftype = abc1\n", QStringLiteral("abc1"));
        row("tight", "ftype=lz", QStringLiteral("lz"));
        row("tabs", "x ftype\t=\tRAW2 y", QStringLiteral("RAW2"));
        row("stops at a hyphen", "ftype=a-b", QStringLiteral("a"));
        row("first report wins", "ftype=one ftype=two", QStringLiteral("one"));
        row("upper case word", "FTYPE=abc1", std::nullopt);
        row("no value", "ftype = ", std::nullopt);
        row("line feed is not a blank", "ftype\n=abc", std::nullopt);
        row("nothing", "", std::nullopt);
    }
    void fileTypeReport() {
        QFETCH(QString, text);
        QTEST(MakeraCapability::fileType(text), "fileType");
    }
};

QTEST_GUILESS_MAIN(UploadSessionTest)
#include "UploadSessionTest.moc"
