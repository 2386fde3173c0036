#include "cli/ProgressJson.h"

#include "app/RawValues.h"

namespace tarnwick::cli {

QJsonObject toJson(const TransferProgress& progress) {
    return {
        {QStringLiteral("phase"), rawValue(progress.phase)},
        {QStringLiteral("bytesSent"), progress.bytesSent},
        {QStringLiteral("totalBytes"), progress.totalBytes},
        {QStringLiteral("bytesPerSecond"), progress.bytesPerSecond},
    };
}

QJsonObject checkingToJson(qint64 bytesChecked, qint64 totalBytes) {
    return {
        {QStringLiteral("phase"), QStringLiteral("checking")},
        {QStringLiteral("bytesChecked"), bytesChecked},
        {QStringLiteral("totalBytes"), totalBytes},
    };
}

} // namespace tarnwick::cli
