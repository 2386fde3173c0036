#pragma once

#include <QDateTime>
#include <QJsonObject>
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

} // namespace tarnwick
