#pragma once

#include "app/Result.h"
#include "protocol/MakeraPacket.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarnwick {

// Answers the machine's file-transfer requests for one file: each packet from the machine becomes
// at most one reply, or the news that the machine ended or cancelled the transfer. It does no I/O.
class MakeraUploadSession {
public:
    static constexpr qint64 defaultChunkSize = 8192;

    struct Event {
        enum class Kind {
            Send,
            Finished,
            Cancelled
        };

        static Event send(MakeraPacket packet) { return {Kind::Send, std::move(packet)}; }
        static Event finished() { return {Kind::Finished, std::nullopt}; }
        static Event cancelled() { return {Kind::Cancelled, std::nullopt}; }

        Kind kind;
        // The reply, for Send.
        std::optional<MakeraPacket> packet;

        friend bool operator==(const Event&, const Event&) = default;
    };

    // The file never changes during an upload, so its digest is taken once: pass `md5` when it is
    // already known (32 lowercase hexadecimal digits), or leave it empty to compute it here.
    // `chunkSize` lies in 1 to 65535.
    MakeraUploadSession(QByteArray fileData, QString filename, qint64 chunkSize = defaultChunkSize,
                        QByteArray md5 = {});

    // MD5 of the whole file as 32 lowercase hexadecimal digits.
    static QByteArray md5Hex(QByteArrayView data);

    const QByteArray& md5() const { return m_md5; }
    qint64 chunkCount() const;
    qint64 chunkSize() const { return m_chunkSize; }
    qint64 fileSize() const { return m_fileData.size(); }
    const QString& filename() const { return m_filename; }

    // The machine's packet in, the reply or notice out; none when the packet needs no answer.
    // A failure leaves the session unchanged.
    Result<std::optional<Event>> receive(const MakeraPacket& packet);

    // What a retry request repeats. The owner sets it to the opening MD5 packet.
    const std::optional<MakeraPacket>& lastPacket() const { return m_lastPacket; }
    void setLastPacket(MakeraPacket packet) { m_lastPacket = std::move(packet); }

    // The highest chunk number served since the last view request.
    qint64 highestSequence() const { return m_highestSequence; }
    // min(highestSequence × chunkSize, file size): what the progress reports.
    qint64 bytesSent() const;

private:
    Result<std::optional<Event>> serveChunk(const MakeraPacket& request);
    MakeraPacket viewReply() const;

    QByteArray m_fileData;
    QString m_filename;
    qint64 m_chunkSize;
    QByteArray m_md5;
    std::optional<MakeraPacket> m_lastPacket;
    qint64 m_highestSequence = 0;
};

} // namespace tarnwick
