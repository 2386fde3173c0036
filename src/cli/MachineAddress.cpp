#include "cli/MachineAddress.h"

#include "app/PortNumber.h"

#include <QRegularExpression>

namespace tarnwick::cli {

std::optional<Machine> parseMachineAddress(const QString& text) {
    const qsizetype colon = text.indexOf(u':');
    const QStringView address = colon < 0 ? QStringView(text) : QStringView(text).left(colon);
    std::optional<quint16> port = defaultControllerPort;
    if (colon >= 0)
        port = parsePortNumber(QStringView(text).sliced(colon + 1));
    if (!port || !isCanonicalIPv4(address))
        return std::nullopt;
    return Machine{QCoreApplication::translate("cli", "Manual machine"), std::nullopt,
                   address.toString(), *port, Machine::ConnectionStatus::Discovered};
}

bool looksLikeAddress(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^[0-9.]+(:.*)?$"));
    return pattern.match(text).hasMatch();
}

} // namespace tarnwick::cli
