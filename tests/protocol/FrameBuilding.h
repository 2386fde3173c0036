#pragma once

#include "protocol/MakeraPacket.h"

#include <QByteArray>

#include <optional>

namespace tarnwick::testing {

// Lays out a frame field by field so that tests can damage any one of them. The checksum is
// computed over the given length, type and payload unless one is supplied.
inline QByteArray buildFrame(quint16 length, quint8 type, const QByteArray& payload,
                             std::optional<quint16> checksum = std::nullopt,
                             quint16 footer = 0x55AA) {
    QByteArray covered;
    covered.append(char(length >> 8)).append(char(length & 0xFF)).append(char(type));
    covered.append(payload);
    const quint16 crc = checksum.value_or(CRC16CCITT::checksum(covered));
    QByteArray frame("\x86\x68", 2);
    frame.append(covered);
    frame.append(char(crc >> 8)).append(char(crc & 0xFF));
    frame.append(char(footer >> 8)).append(char(footer & 0xFF));
    return frame;
}

inline QByteArray buildFrame(quint8 type, const QByteArray& payload) {
    return buildFrame(quint16(payload.size() + 3), type, payload);
}

inline QByteArray encodedFrame(const MakeraPacket& packet) {
    return packet.encoded().value();
}

} // namespace tarnwick::testing
