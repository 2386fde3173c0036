#include "transfer/LoadedJobFile.h"

#include "transfer/MakeraUploadSession.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace tarnwick {

namespace {

PlatformError fileError(const QFile& file) {
    return PlatformError{
        PlatformError::Domain::File, int(file.error()),
        QCoreApplication::translate("tarnwick::LoadedJobFile", "“%1” could not be read: %2.")
            .arg(QFileInfo(file.fileName()).fileName(), file.errorString())};
}

} // namespace

Result<LoadedJobFile> loadJobFile(const QString& path) {
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return fileError(*file);
    const qint64 size = file->size();
    if (size == 0)
        return LoadedJobFile{};

    if (uchar* mapped = file->map(0, size)) {
        QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(mapped), size);
        QByteArray md5 = MakeraUploadSession::md5Hex(bytes);
        return LoadedJobFile{std::move(bytes), std::move(md5), std::move(file)};
    }
    // Not every file system can map (pipes, some network shares): read it instead.
    QByteArray bytes = file->readAll();
    if (file->error() != QFileDevice::NoError)
        return fileError(*file);
    QByteArray md5 = MakeraUploadSession::md5Hex(bytes);
    return LoadedJobFile{std::move(bytes), std::move(md5), nullptr};
}

} // namespace tarnwick
