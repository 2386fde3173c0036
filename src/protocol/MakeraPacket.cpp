#include "protocol/MakeraPacket.h"

namespace tarnwick {

namespace {

quint16 bigEndian16(const char* p) {
    return quint16((quint8(p[0]) << 8) | quint8(p[1]));
}

} // namespace

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
    p[2] = char(length >> 8);
    p[3] = char(length & 0xFF);
    p[4] = char(type);
    const quint16 crc =
        CRC16CCITT::extendCopying(CRC16CCITT::checksum(QByteArrayView(p + 2, 3)), payload, p + 5);
    p[length + 2] = char(crc >> 8);
    p[length + 3] = char(crc & 0xFF);
    p[length + 4] = char(MakeraFrame::footer >> 8);
    p[length + 5] = char(MakeraFrame::footer & 0xFF);
    return frame;
}

Result<MakeraPacket> MakeraPacketDecoder::decode(QByteArrayView frame) {
    if (frame.size() < MakeraFrame::minimumSize)
        return MakeraPacketError::truncated();
    const char* p = frame.data();

    const quint16 header = bigEndian16(p);
    if (header != MakeraFrame::header)
        return MakeraPacketError::invalidHeader(header);

    const quint16 length = bigEndian16(p + 2);
    if (!MakeraFrame::isValidLength(length))
        return MakeraPacketError::invalidLength(length);
    if (frame.size() < length + MakeraFrame::overhead)
        return MakeraPacketError::truncated();

    const quint16 footer = bigEndian16(p + length + 4);
    if (footer != MakeraFrame::footer)
        return MakeraPacketError::invalidFooter(footer);

    // The payload is copied while its checksum is computed: one pass over the bytes.
    QByteArray payload(length - MakeraFrame::minimumLength, Qt::Uninitialized);
    const quint16 computed = CRC16CCITT::extendCopying(
        CRC16CCITT::checksum(frame.sliced(2, 3)), frame.sliced(5, payload.size()), payload.data());
    const quint16 stored = bigEndian16(p + length + 2);
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
    return bigEndian16(bytes.data() + at);
}

Result<quint32> readUInt32(QByteArrayView bytes, qsizetype at) {
    if (at < 0 || at > bytes.size() - 4)
        return MakeraPacketError::truncated();
    const char* p = bytes.data() + at;
    return quint32(bigEndian16(p)) << 16 | bigEndian16(p + 2);
}

} // namespace tarnwick
