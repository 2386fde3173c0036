#include "FuzzCheck.h"
#include "protocol/MakeraFrameParser.h"

#include <QList>

#include <cstddef>
#include <cstdint>

using namespace tarnwick;

namespace {

// After a drain: nothing, a lone 0x86, or one frame that has not fully arrived.
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
    return MakeraFrame::isValidLength(length) && bytes.size() < length + 6;
}

// The cutting steps in their plainest form, one packet per call, for the parser to be held to.
class ReferenceParser {
public:
    void append(QByteArrayView bytes) { m_buffer.append(bytes); }

    std::optional<MakeraPacket> next() {
        for (;;) {
            const qsizetype headerAt =
                m_buffer.size() < 2 ? -1 : m_buffer.indexOf(QByteArrayView("\x86\x68", 2));
            if (headerAt < 0) {
                qsizetype droppable = m_buffer.size();
                if (droppable > 0 && m_buffer.back() == '\x86')
                    --droppable;
                drop(droppable);
                return std::nullopt;
            }
            drop(headerAt);
            if (m_buffer.size() < 4)
                return std::nullopt;
            const qint64 length = readUInt16(m_buffer, 2).value();
            if (length < 3 || length > 8200) {
                drop(2);
                continue;
            }
            if (m_buffer.size() < length + 6)
                return std::nullopt;
            const QByteArray frame = m_buffer.first(length + 6);
            const Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(frame);
            if (decoded.ok()) {
                m_buffer.remove(0, length + 6);
                return decoded.value();
            }
            const MakeraPacketError* error = decoded.error().get<MakeraPacketError>();
            FUZZ_CHECK(error != nullptr);
            if (error->kind() == MakeraPacketError::Kind::UnknownType) {
                m_buffer.remove(0, length + 6);
                ++ignoredFrames;
                continue;
            }
            drop(2);
        }
    }

    const QByteArray& buffer() const { return m_buffer; }

    qint64 resynchronisedBytes = 0;
    qint64 ignoredFrames = 0;

private:
    void drop(qsizetype count) {
        m_buffer.remove(0, count);
        resynchronisedBytes += count;
    }

    QByteArray m_buffer;
};

struct Outcome {
    QList<MakeraPacket> packets;
    qint64 frameBytes = 0;
};

template <typename Parser>
void drain(Parser& parser, Outcome& outcome) {
    while (std::optional<MakeraPacket> packet = parser.next()) {
        const Result<QByteArray> frame = packet->encoded();
        FUZZ_CHECK(frame.ok());
        outcome.frameBytes += frame.value().size();
        outcome.packets.append(*packet);
    }
}

} // namespace

// The first byte says how many piece sizes follow (1 to 8); the remaining bytes are the stream,
// appended in pieces of those sizes in turn. However the stream is cut, the parser must produce
// what it produces for the stream in one piece and what the plain one-packet-per-call steps
// produce, keep its invariant after every drain, let its counters only grow, and account for
// every byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const std::size_t sizeCount = std::size_t(data[0] % 8) + 1;
    if (size < 1 + sizeCount)
        return 0;
    const std::uint8_t* pieceSizes = data + 1;
    const QByteArrayView stream(data + 1 + sizeCount, qsizetype(size - 1 - sizeCount));

    MakeraFrameParser whole;
    Outcome expected;
    whole.append(stream);
    drain(whole, expected);

    MakeraFrameParser parser;
    Outcome outcome;
    ReferenceParser reference;
    Outcome referenceOutcome;
    qint64 appended = 0;
    for (std::size_t piece = 0; appended < stream.size(); ++piece) {
        // Sizes 1 to 256, scaled up now and then so that large frames arrive in few pieces.
        const std::uint8_t code = pieceSizes[piece % sizeCount];
        const qsizetype wanted = (code & 0x80) ? qsizetype(code & 0x7F) * 97 + 1 : code + 1;
        const qsizetype length = std::min(wanted, qsizetype(stream.size() - appended));
        const qint64 resynchronisedBefore = parser.resynchronisedBytes();
        const qint64 ignoredBefore = parser.ignoredFrames();

        parser.append(stream.sliced(appended, length));
        appended += length;
        drain(parser, outcome);
        reference.append(stream.sliced(appended - length, length));
        drain(reference, referenceOutcome);

        FUZZ_CHECK(parser.buffer() == reference.buffer());
        FUZZ_CHECK(parser.resynchronisedBytes() == reference.resynchronisedBytes);
        FUZZ_CHECK(parser.ignoredFrames() == reference.ignoredFrames);
        FUZZ_CHECK(outcome.packets.size() == referenceOutcome.packets.size());

        FUZZ_CHECK(holdsAtMostOneIncompleteFrame(parser.buffer()));
        FUZZ_CHECK(parser.resynchronisedBytes() >= resynchronisedBefore);
        FUZZ_CHECK(parser.ignoredFrames() >= ignoredBefore);
        const qint64 skippedFrameBytes =
            appended - parser.buffer().size() - parser.resynchronisedBytes() - outcome.frameBytes;
        FUZZ_CHECK(skippedFrameBytes >= 9 * parser.ignoredFrames());
        FUZZ_CHECK(skippedFrameBytes <= 8206 * parser.ignoredFrames());
    }

    FUZZ_CHECK(outcome.packets == expected.packets);
    FUZZ_CHECK(outcome.packets == referenceOutcome.packets);
    FUZZ_CHECK(parser.resynchronisedBytes() == whole.resynchronisedBytes());
    FUZZ_CHECK(parser.ignoredFrames() == whole.ignoredFrames());
    FUZZ_CHECK(parser.buffer() == whole.buffer());
    return 0;
}
