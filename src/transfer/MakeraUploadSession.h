#pragma once

#include "app/Result.h"
#include "protocol/MakeraPacket.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace tarnwick {

// Answers the machine's file-transfer requests for one file: each packet from the machine becomes
// at most one reply, or the news that the machine ended or cancelled the transfer. It does no I/O:
// a chunk request becomes ReadChunk, and the owner hands the chunk's bytes to chunkReply().
class MakeraUploadSession {
public:
    static constexpr qint64 defaultChunkSize = 8192;

    struct Event {
        enum class Kind {
            Send,
            ReadChunk,
            Finished,
            Cancelled
        };

        static Event send(MakeraPacket packet) { return {Kind::Send, std::move(packet), 0}; }
        static Event readChunk(qint64 n) { return {Kind::ReadChunk, std::nullopt, n}; }
        static Event finished() { return {Kind::Finished, std::nullopt, 0}; }
        static Event cancelled() { return {Kind::Cancelled, std::nullopt, 0}; }

        Kind kind;
        // The reply, for Send.
        std::optional<MakeraPacket> packet;
        // The chunk asked for (from 1, within the file), for ReadChunk.
        qint64 chunk;

        friend bool operator==(const Event&, const Event&) = default;
    };

    // `md5` is the whole file's, taken before (32 lowercase hexadecimal digits). `chunkSize` lies
    // in 1 to 65535.
    MakeraUploadSession(qint64 fileSize, QString filename, QByteArray md5,
                        qint64 chunkSize = defaultChunkSize);

    // MD5 of the whole file as 32 lowercase hexadecimal digits.
    static QByteArray md5Hex(QByteArrayView data);

    const QByteArray& md5() const { return m_md5; }
    qint64 chunkCount() const;
    qint64 chunkSize() const { return m_chunkSize; }
    qint64 fileSize() const { return m_fileSize; }
    const QString& filename() const { return m_filename; }

    // The machine's packet in, the reply or notice out; none when the packet needs no answer.
    // A failure leaves the session unchanged.
    Result<std::optional<Event>> receive(const MakeraPacket& packet);
    // The reply to a ReadChunk(n) event, given the chunk's bytes; from here on it is what a
    // retry repeats.
    MakeraPacket chunkReply(qint64 n, QByteArrayView bytes);

    // What a retry request repeats. The owner sets it to the opening MD5 packet.
    const std::optional<MakeraPacket>& lastPacket() const { return m_lastPacket; }
    void setLastPacket(MakeraPacket packet) { m_lastPacket = std::move(packet); }

    // The highest chunk number served since the last view request.
    qint64 highestSequence() const { return m_highestSequence; }
    // min(highestSequence × chunkSize, file size): what the progress reports.
    qint64 bytesSent() const;
    // Every chunk has gone out since the last view request: the machine may hold the whole file.
    bool hasServedEveryChunk() const { return m_servedCount == chunkCount(); }

private:
    Result<std::optional<Event>> chunkRequested(const MakeraPacket& request) const;
    MakeraPacket viewReply() const;

    qint64 m_fileSize;
    QString m_filename;
    qint64 m_chunkSize;
    QByteArray m_md5;
    std::optional<MakeraPacket> m_lastPacket;
    qint64 m_highestSequence = 0;
    std::vector<bool> m_served;
    qint64 m_servedCount = 0;
};

} // namespace tarnwick
