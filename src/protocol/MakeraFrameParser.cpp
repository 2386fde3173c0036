#include "protocol/MakeraFrameParser.h"

#include <QtEndian>

#include <cstring>

namespace tarnwick {

namespace {

// Index of the first header in `bytes`, or -1. A lone 0x86 at the very end does not count.
qsizetype findHeader(QByteArrayView bytes) {
    const char* begin = bytes.data();
    const char* end = begin + bytes.size();
    const char* p = begin;
    while (p < end - 1) {
        p = static_cast<const char*>(
            std::memchr(p, quint8(MakeraFrame::headerFirstByte), size_t(end - 1 - p)));
        if (!p)
            return -1;
        if (p[1] == MakeraFrame::headerSecondByte)
            return p - begin;
        ++p;
    }
    return -1;
}

quint16 lengthField(QByteArrayView bytes) {
    return qFromBigEndian<quint16>(bytes.data() + 2);
}

bool isUnknownType(const Error& error) {
    const auto* packetError = error.get<MakeraPacketError>();
    return packetError && packetError->kind() == MakeraPacketError::Kind::UnknownType;
}

} // namespace

void MakeraFrameParser::append(QByteArrayView bytes) {
    // A kept incomplete frame borrows just the bytes it lacks; once it is settled, the rest is
    // cut where it lies.
    while (!buffer().isEmpty() && !bytes.isEmpty()) {
        const qsizetype borrowed = std::min(bytesStillNeeded(), bytes.size());
        m_bytes.append(bytes.first(borrowed));
        bytes = bytes.sliced(borrowed);
        m_consumed += cut(buffer());
        compact();
    }
    if (!bytes.isEmpty()) {
        const qsizetype consumed = cut(bytes);
        m_bytes.append(bytes.sliced(consumed));
    }
}

std::optional<MakeraPacket> MakeraFrameParser::next() {
    if (m_packets.empty())
        return std::nullopt;
    std::optional<MakeraPacket> packet = std::move(m_packets.front());
    m_packets.pop_front();
    return packet;
}

// Cuts every frame out of `bytes` that lies complete in them, and drops what cannot start one,
// up to the first frame that has not fully arrived. Returns how many bytes were consumed.
qsizetype MakeraFrameParser::cut(QByteArrayView bytes) {
    qsizetype at = 0;
    for (;;) {
        QByteArrayView rest = bytes.sliced(at);
        const qsizetype headerAt = rest.size() < 2 ? -1 : findHeader(rest);
        if (headerAt < 0) {
            // Keep only a final 0x86: it may be the first half of a header still on its way.
            qsizetype droppable = rest.size();
            if (droppable > 0 && rest.back() == MakeraFrame::headerFirstByte)
                --droppable;
            m_resynchronisedBytes += droppable;
            return at + droppable;
        }
        if (headerAt > 0) {
            m_resynchronisedBytes += headerAt;
            at += headerAt;
            rest = rest.sliced(headerAt);
        }
        if (rest.size() < 4)
            return at;

        const quint16 length = lengthField(rest);
        if (!MakeraFrame::isValidLength(length)) {
            m_resynchronisedBytes += 2;
            at += 2;
            continue;
        }
        const qsizetype frameSize = length + MakeraFrame::overhead;
        if (rest.size() < frameSize)
            return at;

        Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(rest.first(frameSize));
        if (decoded.ok()) {
            m_packets.push_back(std::move(decoded).value());
            at += frameSize;
        } else if (isUnknownType(decoded.error())) {
            ++m_ignoredFrames;
            at += frameSize;
        } else {
            // A header inside the rejected span may start a genuine frame: drop only this one.
            m_resynchronisedBytes += 2;
            at += 2;
        }
    }
}

// What the kept bytes lack before their first frame can be judged: the length field, or the
// rest of the frame it announces.
qsizetype MakeraFrameParser::bytesStillNeeded() const {
    const QByteArrayView pending = buffer();
    if (pending.size() < 4)
        return 4 - pending.size();
    return lengthField(pending) + MakeraFrame::overhead - pending.size();
}

// Gives back the room of consumed bytes once moving what is left costs no more than they did.
void MakeraFrameParser::compact() {
    const qsizetype pending = m_bytes.size() - m_consumed;
    if (pending > m_consumed)
        return;
    if (pending > 0)
        std::memmove(m_bytes.data(), m_bytes.constData() + m_consumed, size_t(pending));
    m_bytes.resize(pending);
    m_consumed = 0;
}

} // namespace tarnwick
