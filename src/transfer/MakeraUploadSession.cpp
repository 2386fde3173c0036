#include "transfer/MakeraUploadSession.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QtEndian>

namespace tarnwick {

MakeraUploadSession::MakeraUploadSession(QByteArray fileData, QString filename, qint64 chunkSize,
                                         QByteArray md5)
    : m_fileData(std::move(fileData))
    , m_filename(std::move(filename))
    , m_chunkSize(chunkSize)
    , m_md5(md5.isEmpty() ? md5Hex(m_fileData) : std::move(md5)) {
    Q_ASSERT(chunkSize >= 1 && chunkSize <= 0xFFFF);
}

QByteArray MakeraUploadSession::md5Hex(QByteArrayView data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex();
}

qint64 MakeraUploadSession::chunkCount() const {
    return (m_fileData.size() + m_chunkSize - 1) / m_chunkSize;
}

qint64 MakeraUploadSession::bytesSent() const {
    return std::min(m_highestSequence * m_chunkSize, qint64(m_fileData.size()));
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
        return std::optional(Event::send(std::move(reply)));
    }
    case MakeraPacketType::FileData:
        return serveChunk(packet);
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
MakeraUploadSession::serveChunk(const MakeraPacket& request) {
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

    const qint64 start = (n - 1) * m_chunkSize;
    const qint64 end = std::min(start + m_chunkSize, qint64(m_fileData.size()));
    QByteArray payload(4 + (end - start), Qt::Uninitialized);
    qToBigEndian(quint32(n), payload.data());
    std::memcpy(payload.data() + 4, m_fileData.constData() + start, size_t(end - start));

    MakeraPacket reply{MakeraPacketType::FileData, std::move(payload)};
    m_lastPacket = reply;
    m_highestSequence = std::max(m_highestSequence, n);
    return std::optional(Event::send(std::move(reply)));
}

} // namespace tarnwick
