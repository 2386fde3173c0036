#include "discovery/MakeraDiscoveryDatagram.h"

#include "app/PortNumber.h"
#include "app/StrictUtf8.h"

#include <optional>

namespace tarnwick {

Result<Machine> MakeraDiscoveryDatagram::decode(QByteArrayView payload) {
    // A leading byte order mark is a character like any other.
    const std::optional<QString> text = strictUtf8(payload, ByteOrderMark::Kept);
    if (!text)
        return DiscoveryPacketError::InvalidUTF8;

    // QString::trimmed removes exactly the Unicode white space and line breaks, nothing inside.
    const QString trimmed = text->trimmed();
    const QList<QStringView> fields = QStringView(trimmed).split(QLatin1Char(','));
    if (fields.size() < 4)
        return DiscoveryPacketError::InsufficientFields;

    if (!isCanonicalIPv4(fields[1]))
        return DiscoveryPacketError::InvalidAddress;

    const std::optional<quint16> port = parsePortNumber(fields[2]);
    if (!port)
        return DiscoveryPacketError::InvalidPort;

    const QString name = fields[0].isEmpty() ? defaultName() : fields[0].toString();
    const auto status = fields[3] == QLatin1String("1") ? Machine::ConnectionStatus::Busy
                                                        : Machine::ConnectionStatus::Discovered;
    return Machine{name, std::nullopt, fields[1].toString(), *port, status};
}

QByteArray MakeraDiscoveryDatagram::encode(const Machine& machine) {
    QString name = machine.name;
    name.replace(QLatin1Char(','), QLatin1Char(' '));
    const char* busy = machine.status == Machine::ConnectionStatus::Busy ? "1" : "0";
    return (name + QLatin1Char(',') + machine.ipAddress + QLatin1Char(',') +
            QString::number(machine.port) + QLatin1Char(',') + QLatin1String(busy))
        .toUtf8();
}

} // namespace tarnwick
