#include "cli/MachineAddress.h"

namespace tarnwick::cli {

std::optional<Machine> parseMachineAddress(const QString& text) {
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    const QString address = colon < 0 ? text : text.left(colon);
    quint16 port = defaultControllerPort;
    if (colon >= 0) {
        const QString portText = text.mid(colon + 1);
        const bool digitsOnly = !portText.isEmpty() && portText.size() <= 5 &&
                                std::all_of(portText.begin(), portText.end(), [](QChar c) {
                                    return c.isDigit() && c.unicode() < 128;
                                });
        const uint value = digitsOnly ? portText.toUInt() : 0;
        if (value == 0 || value > 65535)
            return std::nullopt;
        port = quint16(value);
    }
    if (!isCanonicalIPv4(address))
        return std::nullopt;
    return Machine{QStringLiteral("Manual machine"), std::nullopt, address, port,
                   Machine::ConnectionStatus::Discovered};
}

} // namespace tarnwick::cli
