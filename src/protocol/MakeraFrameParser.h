#pragma once

#include "protocol/MakeraPacket.h"

#include <QByteArray>
#include <QByteArrayView>

#include <deque>
#include <optional>

namespace tarnwick {

// Cuts complete frames out of a received byte stream and resynchronises on the next header after
// damaged input. It never fails: bytes that belong to no frame are dropped and counted. Not
// synchronised; its owner serialises every call.
//
// Frames are cut as their last byte is appended, straight from the appended bytes; only an
// incomplete frame at the end is copied and kept until the rest of it arrives. So after every
// append, buffer() is empty, or the single byte 0x86, or a header followed by fewer bytes than
// its frame needs, and the packets cut so far wait for next() in arrival order.
class MakeraFrameParser {
public:
    // The owner appends received bytes in arrival order.
    void append(QByteArrayView bytes);

    // The oldest packet not yet taken, or none when no further complete frame has arrived.
    std::optional<MakeraPacket> next();

    // The bytes not yet consumed: at most one incomplete frame.
    QByteArrayView buffer() const { return QByteArrayView(m_bytes).sliced(m_consumed); }

    // Bytes dropped while looking for a frame boundary.
    qint64 resynchronisedBytes() const { return m_resynchronisedBytes; }
    // Sound frames skipped whole because their type byte is not a packet type.
    qint64 ignoredFrames() const { return m_ignoredFrames; }

private:
    qsizetype cut(QByteArrayView bytes);
    qsizetype bytesStillNeeded() const;
    void compact();

    // The kept incomplete frame, behind a prefix of bytes already consumed from it.
    QByteArray m_bytes;
    qsizetype m_consumed = 0;
    std::deque<MakeraPacket> m_packets;
    qint64 m_resynchronisedBytes = 0;
    qint64 m_ignoredFrames = 0;
};

} // namespace tarnwick
