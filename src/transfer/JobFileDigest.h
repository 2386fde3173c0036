#pragma once

#include "app/Result.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <vector>

namespace tarnwick {

// What an upload announces about its file: the size, the MD5, and a cheap check of every chunk,
// so that each chunk read back later can be proved to be the one that was hashed.
struct JobFileDigest {
    qint64 size = 0;
    // 32 lowercase hexadecimal digits.
    QByteArray md5;
    std::vector<quint64> chunkChecks;
};

// A chunk's check: fast, and keyed alike in every thread of the process.
quint64 chunkCheck(QByteArrayView chunk);

// Shared by the hashing worker and its owner: the owner asks it to stop and reads how far it got.
struct DigestProgress {
    std::atomic<bool> stop{false};
    std::atomic<qint64> bytesRead{0};
    std::atomic<qint64> totalBytes{0};
};

// Reads the file once in large blocks. Blocking: run it off the main thread. Fails with the read
// error (a PlatformError of domain File), with JobFileError::changedWhileSending() when the file
// shrinks or grows meanwhile, or with CancellationError once asked to stop.
Result<JobFileDigest> digestJobFile(const QString& path, qint64 chunkSize,
                                    DigestProgress& progress);

// The error of a file that cannot be opened or read, with Qt's text.
PlatformError jobFileReadError(const QString& path, const QString& reason, int code);

} // namespace tarnwick
