#include "transfer/MakeraUploadSession.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QtEndian>

#include <cstring>

namespace tarnwick {

MakeraUploadSession::MakeraUploadSession(qint64 fileSize, QString filename, QByteArray md5,
                                         qint64 chunkSize)
    : m_fileSize(fileSize)
    , m_filename(std::move(filename))
    , m_chunkSize(chunkSize)
    , m_md5(std::move(md5))
    , m_served(size_t((fileSize + chunkSize - 1) / chunkSize), false) {
    Q_ASSERT(chunkSize >= 1 && chunkSize <= 0xFFFF);
}

QByteArray MakeraUploadSession::md5Hex(QByteArrayView data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex();
}

qint64 MakeraUploadSession::chunkCount() const {
    return (m_fileSize + m_chunkSize - 1) / m_chunkSize;
}

qint64 MakeraUploadSession::bytesSent() const {
    return std::min(m_highestSequence * m_chunkSize, m_fileSize);
}

Result<std::optional<MakeraUploadSession::Event>>
MakeraUploadSession::receive(const MakeraPacket& packet) {
    switch (packet.type) {
    case MakeraPacketType::FileMD5: {
        MakeraPacket reply{MakeraPacketType::FileMD5, m_md5};
        m_lastPacket = reply;
        return std::optional(Event::send(std::move(reply)));
    }
    case MakeraPacketType::FileView: {
        MakeraPacket reply = viewReply();
        m_lastPacket = reply;
        m_highestSequence = 0;
        std::fill(m_served.begin(), m_served.end(), false);
        m_servedCount = 0;
        return std::optional(Event::send(std::move(reply)));
    }
    case MakeraPacketType::FileData:
        return chunkRequested(packet);
    case MakeraPacketType::FileEnd:
        return std::optional(Event::finished());
    case MakeraPacketType::FileCancel:
        return std::optional(Event::cancelled());
    case MakeraPacketType::FileRetry:
        if (!m_lastPacket)
            return UploadError::invalidResponse(QCoreApplication::translate(
                "tarnwick::MakeraUploadSession", "Retry arrived before any transfer packet."));
        return std::optional(Event::send(*m_lastPacket));
    default:
        // Not part of the transfer: nothing to answer.
        Q_ASSERT(!isTransferPacket(packet.type));
        break;
    }
    return std::optional<Event>();
}

MakeraPacket MakeraUploadSession::viewReply() const {
    QByteArray payload(6, Qt::Uninitialized);
    qToBigEndian(quint32(chunkCount()), payload.data());
    qToBigEndian(quint16(m_chunkSize), payload.data() + 4);
    return {MakeraPacketType::FileView, payload};
}

Result<std::optional<MakeraUploadSession::Event>>
MakeraUploadSession::chunkRequested(const MakeraPacket& request) const {
    const Result<quint32> number = readUInt32(request.payload, 0);
    if (!number)
        return number.error();
    const qint64 n = number.value();
    const qint64 count = chunkCount();
    if (n == 0 || n > count)
        return UploadError::invalidResponse(
            QCoreApplication::translate("tarnwick::MakeraUploadSession",
                                        "Requested chunk %1 is outside 1...%2.")
                .arg(n)
                .arg(count));
    return std::optional(Event::readChunk(n));
}

MakeraPacket MakeraUploadSession::chunkReply(qint64 n, QByteArrayView bytes) {
    QByteArray payload(4 + bytes.size(), Qt::Uninitialized);
    qToBigEndian(quint32(n), payload.data());
    std::memcpy(payload.data() + 4, bytes.data(), size_t(bytes.size()));

    MakeraPacket reply{MakeraPacketType::FileData, std::move(payload)};
    m_lastPacket = reply;
    m_highestSequence = std::max(m_highestSequence, n);
    if (!m_served[size_t(n - 1)]) {
        m_served[size_t(n - 1)] = true;
        ++m_servedCount;
    }
    return reply;
}

} // namespace tarnwick
