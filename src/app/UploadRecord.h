#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace tarnwick {

// One finished upload, kept to warn before the same file goes to the same machine again.
struct UploadRecord {
    QString machineID;
    QString filePath;
    qint64 fileSize = 0;
    QDateTime uploadedAt;

    QJsonObject toJson() const;
    static std::optional<UploadRecord> fromJson(const QJsonValue& value);

    friend bool operator==(const UploadRecord&, const UploadRecord&) = default;
};

size_t qHash(const UploadRecord& record, size_t seed = 0);

inline constexpr qint64 duplicateUploadWindowSeconds = 86'400;

// True when a record shows the same file (path and size) going to the same machine no earlier than
// 24 hours before `now`: the warning before a file goes to a machine twice.
bool isRecentDuplicate(const QList<UploadRecord>& records, const QString& machineID,
                       const QString& filePath, qint64 fileSize, const QDateTime& now);

} // namespace tarnwick
