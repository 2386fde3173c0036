#pragma once

#include "app/Errors.h"
#include "transfer/JobFileDigest.h"

#include <QFutureWatcher>
#include <QObject>

#include <memory>
#include <optional>

namespace tarnwick {

// Reads a job file's chunks back while it is sent, a block of neighbours at a time and off the
// owner's thread, and lets through only bytes that match the digest taken before the transfer.
// Whatever another program does to the file meanwhile, a chunk is either the hashed one or the
// load fails with JobFileError::changedWhileSending().
class JobFileChunks : public QObject {
    Q_OBJECT

public:
    JobFileChunks(QString path, std::shared_ptr<const JobFileDigest> digest, qint64 chunkSize,
                  QObject* parent = nullptr);

    // Chunk n (from 1) when its block is at hand; none means load(n) first.
    std::optional<QByteArray> chunk(qint64 n) const;
    // Reads the block that holds chunk n; emits exactly one of loaded() / failed(error), later.
    void load(qint64 n);

Q_SIGNALS:
    void loaded();
    void failed(const tarnwick::Error& error);

private:
    struct Block {
        qint64 firstChunk = 0;
        QByteArray bytes;
    };

    void blockRead();

    const QString m_path;
    const std::shared_ptr<const JobFileDigest> m_digest;
    const qint64 m_chunkSize;
    Block m_block;
    QFutureWatcher<Result<Block>> m_reading;
};

} // namespace tarnwick
