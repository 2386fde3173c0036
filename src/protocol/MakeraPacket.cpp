#include "protocol/MakeraPacket.h"

#include <QtEndian>

namespace tarnwick {

std::optional<MakeraPacketType> makeraPacketType(quint8 rawValue) {
    switch (MakeraPacketType(rawValue)) {
    case MakeraPacketType::StatusResponse:
    case MakeraPacketType::DiagnosticResponse:
    case MakeraPacketType::LoadInfo:
    case MakeraPacketType::LoadFinished:
    case MakeraPacketType::LoadError:
    case MakeraPacketType::NormalInfo:
    case MakeraPacketType::ControlSingle:
    case MakeraPacketType::ControlMulti:
    case MakeraPacketType::FileStart:
    case MakeraPacketType::FileMD5:
    case MakeraPacketType::FileView:
    case MakeraPacketType::FileData:
    case MakeraPacketType::FileEnd:
    case MakeraPacketType::FileCancel:
    case MakeraPacketType::FileRetry:
        return MakeraPacketType(rawValue);
    }
    return std::nullopt;
}

Result<QByteArray> MakeraPacket::encoded() const {
    const qint64 length = qint64(payload.size()) + MakeraFrame::minimumLength;
    if (length > MakeraFrame::maximumLength)
        return MakeraPacketError::oversized(length);

    QByteArray frame(length + MakeraFrame::overhead, Qt::Uninitialized);
    char* p = frame.data();
    p[0] = MakeraFrame::headerFirstByte;
    p[1] = MakeraFrame::headerSecondByte;
    qToBigEndian(quint16(length), p + 2);
    p[4] = char(type);
    const quint16 crc =
        CRC16CCITT::extendCopying(CRC16CCITT::checksum(QByteArrayView(p + 2, 3)), payload, p + 5);
    qToBigEndian(crc, p + length + 2);
    qToBigEndian(MakeraFrame::footer, p + length + 4);
    return frame;
}

Result<MakeraPacket> MakeraPacketDecoder::decode(QByteArrayView frame) {
    if (frame.size() < MakeraFrame::minimumSize)
        return MakeraPacketError::truncated();
    const char* p = frame.data();

    const quint16 header = qFromBigEndian<quint16>(p);
    if (header != MakeraFrame::header)
        return MakeraPacketError::invalidHeader(header);

    const quint16 length = qFromBigEndian<quint16>(p + 2);
    if (!MakeraFrame::isValidLength(length))
        return MakeraPacketError::invalidLength(length);
    if (frame.size() < length + MakeraFrame::overhead)
        return MakeraPacketError::truncated();

    const quint16 footer = qFromBigEndian<quint16>(p + length + 4);
    if (footer != MakeraFrame::footer)
        return MakeraPacketError::invalidFooter(footer);

    // The payload is copied while its checksum is computed: one pass over the bytes.
    QByteArray payload(length - MakeraFrame::minimumLength, Qt::Uninitialized);
    const quint16 computed = CRC16CCITT::extendCopying(
        CRC16CCITT::checksum(frame.sliced(2, 3)), frame.sliced(5, payload.size()), payload.data());
    const quint16 stored = qFromBigEndian<quint16>(p + length + 2);
    if (computed != stored)
        return MakeraPacketError::checksum(computed, stored);

    const quint8 typeByte = quint8(p[4]);
    const std::optional<MakeraPacketType> type = makeraPacketType(typeByte);
    if (!type)
        return MakeraPacketError::unknownType(typeByte);

    return MakeraPacket{*type, std::move(payload)};
}

Result<quint16> readUInt16(QByteArrayView bytes, qsizetype at) {
    if (at < 0 || at > bytes.size() - 2)
        return MakeraPacketError::truncated();
    return qFromBigEndian<quint16>(bytes.data() + at);
}

Result<quint32> readUInt32(QByteArrayView bytes, qsizetype at) {
    if (at < 0 || at > bytes.size() - 4)
        return MakeraPacketError::truncated();
    return qFromBigEndian<quint32>(bytes.data() + at);
}

} // namespace tarnwick
