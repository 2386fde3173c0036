#pragma once

#include <QDateTime>
#include <QJsonValue>

#include <optional>

namespace tarnwick {

// Dates are stored as seconds, with their fraction, since 2001-01-01T00:00:00Z.
inline constexpr qint64 referenceDateUnixSeconds = 978'307'200;

QJsonValue toStoredDate(const QDateTime& date);
std::optional<QDateTime> fromStoredDate(const QJsonValue& value);

} // namespace tarnwick
