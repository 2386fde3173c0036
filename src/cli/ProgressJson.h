#pragma once

#include "app/TransferProgress.h"

#include <QJsonObject>

namespace tarnwick::cli {

// The JSON lines of --json while an upload runs.
QJsonObject toJson(const TransferProgress& progress);
QJsonObject checkingToJson(qint64 bytesChecked, qint64 totalBytes);

} // namespace tarnwick::cli
