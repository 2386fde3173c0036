#pragma once

#include "app/Result.h"
#include "protocol/CRC16CCITT.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QMetaType>
#include <QObject>

#include <optional>

namespace tarnwick {

// Its own namespace gives the packet type a meta-object, so that logs print its cases' names.
namespace MakeraPacketTypes {
Q_NAMESPACE

// The type byte of a frame. No other byte value is a packet type.
enum class MakeraPacketType : quint8 {
    StatusResponse = 0x81,
    DiagnosticResponse = 0x82,
    LoadInfo = 0x83,
    LoadFinished = 0x84,
    LoadError = 0x85,
    NormalInfo = 0x90,
    ControlSingle = 0xA1,
    ControlMulti = 0xA2,
    FileStart = 0xB0,
    FileMD5 = 0xB1,
    FileView = 0xB2,
    FileData = 0xB3,
    FileEnd = 0xB4,
    FileCancel = 0xB5,
    FileRetry = 0xB6
};
Q_ENUM_NS(MakeraPacketType)

} // namespace MakeraPacketTypes

using MakeraPacketTypes::MakeraPacketType;

std::optional<MakeraPacketType> makeraPacketType(quint8 rawValue);

// The packets that carry a file transfer once it is open; with every other type the machine
// talks about itself, or is told to do something.
constexpr bool isTransferPacket(MakeraPacketType type) {
    return type >= MakeraPacketType::FileMD5 && type <= MakeraPacketType::FileRetry;
}

// Frame layout: 86 68, length L (big-endian, = 1 + payload + 2), type, payload, checksum over the
// length field, type and payload (big-endian), 55 AA. A frame is L + 6 bytes long.
namespace MakeraFrame {
inline constexpr quint16 header = 0x8668;
inline constexpr quint16 footer = 0x55AA;
inline constexpr char headerFirstByte = char(0x86);
inline constexpr char headerSecondByte = char(0x68);
inline constexpr qsizetype minimumLength = 3;
inline constexpr qsizetype maximumLength = 8200;
inline constexpr qsizetype overhead = 6; // header, length field and footer
inline constexpr qsizetype minimumSize = minimumLength + overhead;

// The length field's value is one a frame may carry (one unsigned comparison for both bounds).
constexpr bool isValidLength(quint16 length) {
    return quint16(length - minimumLength) <= maximumLength - minimumLength;
}
} // namespace MakeraFrame

struct MakeraPacket {
    MakeraPacketType type;
    QByteArray payload;

    static constexpr qsizetype maximumPayloadSize = 8197;

    // The frame for this packet, or MakeraPacketError::oversized(L) when L = payload + 3 > 8200.
    Result<QByteArray> encoded() const;

    friend bool operator==(const MakeraPacket&, const MakeraPacket&) = default;
};

struct MakeraPacketDecoder {
    // Decodes the frame at the start of `frame`; bytes after it are ignored. The first failing
    // check decides the error: size, header, length, size for that length, footer, checksum, type.
    static Result<MakeraPacket> decode(QByteArrayView frame);
};

// Big-endian readers; MakeraPacketError::truncated() when the value does not lie within `bytes`.
Result<quint16> readUInt16(QByteArrayView bytes, qsizetype at);
Result<quint32> readUInt32(QByteArrayView bytes, qsizetype at);

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::MakeraPacket)
