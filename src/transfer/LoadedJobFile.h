#pragma once

#include "app/Result.h"

#include <QByteArray>
#include <QFile>

#include <memory>

namespace tarnwick {

// A job file's content, held for one upload, with its MD5 taken once.
struct LoadedJobFile {
    // Points into the mapping when the file could be mapped.
    QByteArray bytes;
    // 32 lowercase hexadecimal digits; empty for an empty file.
    QByteArray md5;
    // Keeps the mapping alive as long as `bytes` is used.
    std::shared_ptr<QFile> mapping;
};

// Reads (memory-maps where it can) and hashes the file. Blocking: call it off the main thread.
Result<LoadedJobFile> loadJobFile(const QString& path);

} // namespace tarnwick
