#pragma once

#include "app/RawValues.h"

#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <optional>

namespace tarnwick {

// One CNC controller on the local network.
struct Machine {
    Q_GADGET

public:
    enum class ConnectionStatus {
        Discovered,
        Connecting,
        Connected,
        Busy,
        Unavailable
    };
    Q_ENUM(ConnectionStatus)

    QString name;
    std::optional<QString> model;
    QString ipAddress;
    quint16 port = 0;
    ConnectionStatus status = ConnectionStatus::Discovered;

    // Address, ":" and decimal port: the identity that merging, status updates and history use.
    QString id() const;

    QJsonObject toJson() const;
    static std::optional<Machine> fromJson(const QJsonValue& value);

    friend bool operator==(const Machine&, const Machine&) = default;
};

// The controller's usual port: what an address given without one means.
inline constexpr quint16 defaultControllerPort = 2222;

std::optional<Machine::ConnectionStatus> connectionStatusFromRawValue(const QString& text);

size_t qHash(const Machine& machine, size_t seed = 0);

// Four dot-separated decimal numbers from 0 to 255, each written in its plain form:
// no empty piece, no sign, no blank, no leading zero other than a lone "0".
bool isCanonicalIPv4(QStringView text);

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::Machine)
