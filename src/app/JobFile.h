#pragma once

#include "app/Result.h"

#include <QDateTime>
#include <QJsonObject>
#include <QMetaType>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tarnwick {

// The folder on the machine that every upload goes into.
inline constexpr char machineJobFolder[] = "/sd/gcodes/";

// A job file the user has chosen.
struct JobFile {
    QUrl url;
    qint64 size = 0;
    std::optional<QDateTime> modifiedAt;

    // The URL's path, e.g. /home/ann/jobs/part.nc.
    QString id() const { return url.path(); }
    // The last component of the path, e.g. part.nc.
    QString fileName() const;

    // Lower-case extensions without the dot.
    static const QStringList& acceptedExtensions();

    // Validates a chosen location: the file system's own error when it cannot be queried,
    // then a regular file, then an accepted extension (in any letter case).
    static Result<JobFile> fromUrl(const QUrl& url);

    QJsonObject toJson() const;
    static std::optional<JobFile> fromJson(const QJsonValue& value);

    friend bool operator==(const JobFile&, const JobFile&) = default;
};

size_t qHash(const JobFile& file, size_t seed = 0);

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::JobFile)
