#include "app/UploadRecord.h"

#include "app/JsonFields.h"
#include "app/StoredDate.h"

#include <QHashFunctions>

#include <algorithm>

namespace tarnwick {

QJsonObject UploadRecord::toJson() const {
    return QJsonObject{
        {QLatin1String("machineID"), machineID},
        {QLatin1String("filePath"), filePath},
        {QLatin1String("fileSize"), fileSize},
        {QLatin1String("uploadedAt"), toStoredDate(uploadedAt)},
    };
}

std::optional<UploadRecord> UploadRecord::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const auto machineID = json::string(object, QLatin1String("machineID"));
    const auto filePath = json::string(object, QLatin1String("filePath"));
    const auto fileSize = json::integer(object, QLatin1String("fileSize"));
    const auto uploadedAt = fromStoredDate(object.value(QLatin1String("uploadedAt")));
    if (!machineID || !filePath || !fileSize || !uploadedAt)
        return std::nullopt;
    return UploadRecord{*machineID, *filePath, *fileSize, *uploadedAt};
}

size_t qHash(const UploadRecord& record, size_t seed) {
    return qHashMulti(seed, record.machineID, record.filePath, record.fileSize, record.uploadedAt);
}

bool isRecentDuplicate(const QList<UploadRecord>& records, const QString& machineID,
                       const QString& filePath, qint64 fileSize, const QDateTime& now) {
    const QDateTime cutoff = now.addSecs(-duplicateUploadWindowSeconds);
    return std::any_of(records.begin(), records.end(), [&](const UploadRecord& record) {
        return record.machineID == machineID && record.filePath == filePath &&
               record.fileSize == fileSize && record.uploadedAt >= cutoff;
    });
}

} // namespace tarnwick
