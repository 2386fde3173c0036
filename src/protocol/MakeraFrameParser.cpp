#include "protocol/MakeraFrameParser.h"

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

bool isUnknownType(const Error& error) {
    const auto* packetError = error.get<MakeraPacketError>();
    return packetError && packetError->kind() == MakeraPacketError::Kind::UnknownType;
}

} // namespace

void MakeraFrameParser::append(QByteArrayView bytes) {
    if (m_consumed > 0) {
        const qsizetype pending = m_bytes.size() - m_consumed;
        if (pending <= m_consumed) {
            if (pending > 0)
                std::memmove(m_bytes.data(), m_bytes.constData() + m_consumed, size_t(pending));
            m_bytes.resize(pending);
            m_consumed = 0;
        }
    }
    m_bytes.append(bytes);
}

std::optional<MakeraPacket> MakeraFrameParser::next() {
    for (;;) {
        QByteArrayView pending = buffer();
        if (pending.size() < 2)
            return waitForMore();
        const qsizetype headerAt = findHeader(pending);
        if (headerAt < 0)
            return waitForMore();
        if (headerAt > 0) {
            discard(headerAt);
            pending = buffer();
        }
        if (pending.size() < 4)
            return std::nullopt;

        const quint16 length = quint16((quint8(pending[2]) << 8) | quint8(pending[3]));
        if (!MakeraFrame::isValidLength(length)) {
            discard(2);
            continue;
        }
        const qsizetype frameSize = length + MakeraFrame::overhead;
        if (pending.size() < frameSize)
            return std::nullopt;

        Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(pending.first(frameSize));
        if (decoded.ok()) {
            consume(frameSize);
            return std::move(decoded).value();
        }
        if (isUnknownType(decoded.error())) {
            consume(frameSize);
            ++m_ignoredFrames;
            continue;
        }
        // A header inside the rejected span may start a genuine frame: drop only this header.
        discard(2);
    }
}

// No header at the front and none to be found: keep only a final 0x86, which may be the first
// half of a header still on its way.
std::optional<MakeraPacket> MakeraFrameParser::waitForMore() {
    const QByteArrayView pending = buffer();
    qsizetype droppable = pending.size();
    if (droppable > 0 && pending.back() == MakeraFrame::headerFirstByte)
        --droppable;
    if (droppable > 0)
        discard(droppable);
    return std::nullopt;
}

} // namespace tarnwick
