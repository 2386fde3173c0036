#pragma once

#include <QJsonObject>

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

// A whole number within [minimum, maximum]; fractions and numbers beyond 64 bits read as none.
inline std::optional<qint64> integer(const QJsonObject& object, QLatin1StringView key,
                                     qint64 minimum = std::numeric_limits<qint64>::min(),
                                     qint64 maximum = std::numeric_limits<qint64>::max()) {
    const QJsonValue value = object.value(key);
    // toInteger() gives its fallback for anything that is no whole 64-bit number; two different
    // fallbacks tell that apart from a number that happens to equal one of them.
    const qint64 number = value.toInteger(0);
    if (!value.isDouble() || number != value.toInteger(1) || number < minimum || number > maximum)
        return std::nullopt;
    return number;
}

} // namespace tarnwick::json
