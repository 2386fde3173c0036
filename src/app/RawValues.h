#pragma once

#include <QMetaEnum>
#include <QString>

#include <optional>

namespace tarnwick {

// The stored and printed text of an enumeration declared with Q_ENUM: the case's name with a
// lower-case first letter, e.g. Busy reads "busy".
template <typename Enum>
QString rawValue(Enum value) {
    QString text = QLatin1String(QMetaEnum::fromType<Enum>().valueToKey(int(value)));
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    return text;
}

// Matched exactly: any other letter case, a qualified name or a number is no case.
template <typename Enum>
std::optional<Enum> enumFromRawValue(QStringView text) {
    if (text.isEmpty() || !text.front().isLower())
        return std::nullopt;
    QString key = text.toString();
    key[0] = key[0].toUpper();
    bool found = false;
    const int value = QMetaEnum::fromType<Enum>().keyToValue(key.toLatin1().constData(), &found);
    if (!found || rawValue(Enum(value)) != text)
        return std::nullopt;
    return Enum(value);
}

} // namespace tarnwick
