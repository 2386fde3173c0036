#pragma once

#include "protocol/MakeraPacket.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tarnwick {

// Cuts complete frames out of a received byte stream, one packet per next() call, and
// resynchronises on the next header after damaged input. It never fails: bytes that belong to no
// frame are dropped and counted. Not synchronised; its owner serialises every call.
//
// After next() has returned no packet, buffer() is empty, or the single byte 0x86, or a header
// followed by fewer bytes than its frame needs: at most one incomplete frame is ever kept.
class MakeraFrameParser {
public:
    // The owner appends received bytes in arrival order.
    void append(QByteArrayView bytes);

    // The packet of the complete frame at the front of the buffer, removing that frame's bytes,
    // or none when no complete frame has arrived yet.
    std::optional<MakeraPacket> next();

    // The bytes not yet consumed.
    QByteArrayView buffer() const { return QByteArrayView(m_bytes).sliced(m_consumed); }

    // Bytes dropped while looking for a frame boundary.
    qint64 resynchronisedBytes() const { return m_resynchronisedBytes; }
    // Sound frames skipped whole because their type byte is not a packet type.
    qint64 ignoredFrames() const { return m_ignoredFrames; }

private:
    std::optional<MakeraPacket> waitForMore();
    void consume(qsizetype count) { m_consumed += count; }
    void discard(qsizetype count) {
        m_consumed += count;
        m_resynchronisedBytes += count;
    }

    // Consumed bytes leave the front by moving an offset; they are given back only when the move
    // costs no more than the bytes consumed since, so every byte is copied a bounded number of
    // times however the stream is cut.
    QByteArray m_bytes;
    qsizetype m_consumed = 0;
    qint64 m_resynchronisedBytes = 0;
    qint64 m_ignoredFrames = 0;
};

} // namespace tarnwick
