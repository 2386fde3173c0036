#include "app/StoredDate.h"

#include <cmath>

namespace tarnwick {

QJsonValue toStoredDate(const QDateTime& date) {
    const qint64 msecs = date.toMSecsSinceEpoch() - referenceDateUnixSeconds * 1000;
    return QJsonValue(double(msecs) / 1000.0);
}

std::optional<QDateTime> fromStoredDate(const QJsonValue& value) {
    if (!value.isDouble())
        return std::nullopt;
    const double seconds = value.toDouble();
    // Beyond ±10^11 s (over 3000 years) a date is no longer a date a file or upload can have.
    if (!std::isfinite(seconds) || std::abs(seconds) > 1e11)
        return std::nullopt;
    const qint64 msecs = std::llround(seconds * 1000.0) + referenceDateUnixSeconds * 1000;
    return QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
}

} // namespace tarnwick
