#include "transfer/JobFileDigest.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QHashFunctions>

#include <algorithm>

namespace tarnwick {

namespace {

// Large enough that the system reads ahead, small enough that a stop request is seen at once.
constexpr qint64 blockChunks = 128;

} // namespace

quint64 chunkCheck(QByteArrayView chunk) {
    return quint64(qHash(chunk, size_t(0x9E3779B97F4A7C15u)));
}

PlatformError jobFileReadError(const QString& path, const QString& reason, int code) {
    return PlatformError{
        PlatformError::Domain::File, code,
        QStringLiteral("“%1” could not be read: %2.").arg(QFileInfo(path).fileName(), reason)};
}

Result<JobFileDigest> digestJobFile(const QString& path, qint64 chunkSize,
                                    DigestProgress& progress) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return jobFileReadError(path, file.errorString(), int(file.error()));
    JobFileDigest digest;
    digest.size = file.size();
    progress.totalBytes = digest.size;
    digest.chunkChecks.reserve(size_t((digest.size + chunkSize - 1) / chunkSize));

    QCryptographicHash md5(QCryptographicHash::Md5);
    QByteArray block(blockChunks * chunkSize, Qt::Uninitialized);
    qint64 done = 0;
    while (done < digest.size) {
        if (progress.stop)
            return CancellationError{};
        const qint64 wanted = std::min(qint64(block.size()), digest.size - done);
        const qint64 count = file.read(block.data(), wanted);
        if (count < 0)
            return jobFileReadError(path, file.errorString(), int(file.error()));
        if (count < wanted)
            return JobFileError::changedWhileSending();
        const QByteArrayView bytes(block.constData(), count);
        md5.addData(bytes);
        for (qint64 at = 0; at < count; at += chunkSize)
            digest.chunkChecks.push_back(
                chunkCheck(bytes.sliced(at, std::min(chunkSize, count - at))));
        done += count;
        progress.bytesRead = done;
    }
    char probe;
    if (file.read(&probe, 1) != 0)
        return JobFileError::changedWhileSending();
    digest.md5 = md5.result().toHex();
    return digest;
}

} // namespace tarnwick
