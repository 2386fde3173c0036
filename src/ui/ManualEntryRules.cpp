#include "ui/ManualEntryRules.h"

#include <algorithm>

namespace tarnwick::ui {

std::optional<quint16> parsePortText(const QString& text) {
    const QStringView digits =
        text.startsWith(QLatin1Char('+')) ? QStringView(text).mid(1) : QStringView(text);
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), [](QChar c) {
            return c >= QLatin1Char('0') && c <= QLatin1Char('9');
        }))
        return std::nullopt;
    bool ok = false;
    const qulonglong value = digits.toULongLong(&ok);
    if (!ok || value > 65535)
        return std::nullopt;
    return static_cast<quint16>(value);
}

bool canAddManualMachine(const QString& address, const QString& port) {
    return !address.isEmpty() && parsePortText(port).has_value();
}

quint16 portForManualEntry(const QString& port) {
    return parsePortText(port).value_or(defaultMachinePort);
}

} // namespace tarnwick::ui
