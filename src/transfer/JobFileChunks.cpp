#include "transfer/JobFileChunks.h"

#include <QFile>
#include <QtConcurrent>

#include <algorithm>

namespace tarnwick {

namespace {

constexpr qint64 blockChunks = 64;

} // namespace

JobFileChunks::JobFileChunks(QString path, std::shared_ptr<const JobFileDigest> digest,
                             qint64 chunkSize, QObject* parent)
    : QObject(parent)
    , m_path(std::move(path))
    , m_digest(std::move(digest))
    , m_chunkSize(chunkSize) {
    connect(&m_reading, &QFutureWatcherBase::finished, this, &JobFileChunks::blockRead);
}

std::optional<QByteArray> JobFileChunks::chunk(qint64 n) const {
    const qint64 index = n - 1 - m_block.firstChunk;
    const qint64 start = index * m_chunkSize;
    if (m_block.bytes.isEmpty() || index < 0 || start >= m_block.bytes.size())
        return std::nullopt;
    return m_block.bytes.mid(start, m_chunkSize);
}

void JobFileChunks::load(qint64 n) {
    const qint64 first = (n - 1) / blockChunks * blockChunks;
    // Opened afresh for every block: a file deleted or replaced since is then seen as such.
    m_reading.setFuture(QtConcurrent::run([path = m_path, digest = m_digest,
                                           chunkSize = m_chunkSize, first]() -> Result<Block> {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly) || file.size() != digest->size)
            return JobFileError::changedWhileSending();
        const qint64 start = first * chunkSize;
        const qint64 length = std::min(blockChunks * chunkSize, digest->size - start);
        QByteArray bytes(length, Qt::Uninitialized);
        if (!file.seek(start) || file.read(bytes.data(), length) != length)
            return JobFileError::changedWhileSending();
        for (qint64 at = 0; at < length; at += chunkSize) {
            const QByteArrayView piece(bytes.constData() + at, std::min(chunkSize, length - at));
            if (chunkCheck(piece) != digest->chunkChecks[size_t(first + at / chunkSize)])
                return JobFileError::changedWhileSending();
        }
        return Block{first, std::move(bytes)};
    }));
}

void JobFileChunks::blockRead() {
    Result<Block> block = m_reading.result();
    if (!block)
        return Q_EMIT failed(block.error());
    m_block = std::move(block).value();
    Q_EMIT loaded();
}

} // namespace tarnwick
