#pragma once

#include "app/Errors.h"

#include <QByteArray>
#include <QSettings>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// The MD5 of what a folder watch last sent to each machine under each path, kept across
// launches so that an unchanged file is not sent again. Written under the store's lock, since
// the app and the command-line tool share the store; call it off the main thread.
class SentDigests {
public:
    using StoreOpener = std::function<std::unique_ptr<QSettings>()>;

    explicit SentDigests(StoreOpener open);

    // Empty when nothing was sent to the machine under that path.
    QByteArray digest(const QString& machineId, const QString& path) const;
    // A PlatformError of the file domain when the store could not be written.
    std::optional<Error> remember(const QString& machineId, const QString& path,
                                  const QByteArray& md5);

    // The MD5 of the file's content, read in chunks; none when it cannot be read.
    static std::optional<QByteArray> fileDigest(const QString& path);

private:
    StoreOpener m_open;
};

} // namespace tarnwick
