#include "ui/ManualEntryRules.h"

#include "app/Machine.h"
#include "app/PortNumber.h"

#include <algorithm>

namespace tarnwick::ui {

std::optional<quint16> parsePortText(const QString& text) {
    if (const auto port = parsePortNumber(text))
        return port;
    // The field also takes 0, so that "Add" lets the model refuse it with its own message.
    const QStringView digits = text.startsWith(u'+') ? QStringView(text).sliced(1) : text;
    if (!digits.isEmpty() &&
        std::all_of(digits.begin(), digits.end(), [](QChar c) { return c == u'0'; }))
        return quint16(0);
    return std::nullopt;
}

bool canAddManualMachine(const QString& address, const QString& port) {
    return !address.isEmpty() && parsePortText(port).has_value();
}

quint16 portForManualEntry(const QString& port) {
    return parsePortText(port).value_or(defaultControllerPort);
}

} // namespace tarnwick::ui
