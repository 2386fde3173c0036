#pragma once

#include <QString>

#include <array>
#include <optional>
#include <utility>

namespace tarnwick {

// An enumeration's text raw values, matched exactly in both directions.
template <typename Enum, std::size_t N>
using RawValueTable = std::array<std::pair<Enum, const char*>, N>;

template <typename Enum, std::size_t N>
QString rawValueIn(const RawValueTable<Enum, N>& table, Enum value) {
    for (const auto& [candidate, text] : table) {
        if (candidate == value)
            return QLatin1String(text);
    }
    return {};
}

template <typename Enum, std::size_t N>
std::optional<Enum> valueForRawValueIn(const RawValueTable<Enum, N>& table, const QString& text) {
    for (const auto& [value, raw] : table) {
        if (text == QLatin1String(raw))
            return value;
    }
    return std::nullopt;
}

} // namespace tarnwick
