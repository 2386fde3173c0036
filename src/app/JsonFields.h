#pragma once

#include <QJsonObject>

#include <cmath>
#include <limits>
#include <optional>

namespace tarnwick::json {

// Strict readers for stored documents: a missing key or a value of another type reads as none.

inline std::optional<QString> string(const QJsonObject& object, QLatin1StringView key) {
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

// A whole number within [minimum, maximum]; fractions and out-of-range numbers read as none.
inline std::optional<qint64> integer(const QJsonObject& object, QLatin1StringView key,
                                     qint64 minimum = std::numeric_limits<qint64>::min(),
                                     qint64 maximum = std::numeric_limits<qint64>::max()) {
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (number != std::floor(number) || number < double(minimum) || number > double(maximum) ||
        number >= std::ldexp(1.0, 63))
        return std::nullopt;
    return value.toInteger(qint64(number));
}

} // namespace tarnwick::json
