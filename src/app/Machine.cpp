#include "app/Machine.h"

#include "app/JsonFields.h"
#include "app/RawValues.h"

#include <QHashFunctions>

namespace tarnwick {

QString Machine::id() const {
    return ipAddress + QLatin1Char(':') + QString::number(port);
}

QJsonObject Machine::toJson() const {
    QJsonObject object{
        {QLatin1String("name"), name},
        {QLatin1String("ipAddress"), ipAddress},
        {QLatin1String("port"), int(port)},
        {QLatin1String("status"), rawValue(status)},
    };
    if (model)
        object.insert(QLatin1String("model"), *model);
    return object;
}

std::optional<Machine> Machine::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const auto name = json::string(object, QLatin1String("name"));
    const auto ipAddress = json::string(object, QLatin1String("ipAddress"));
    const auto port = json::integer(object, QLatin1String("port"), 0, 65535);
    const auto statusText = json::string(object, QLatin1String("status"));
    const auto status = statusText ? connectionStatusFromRawValue(*statusText) : std::nullopt;
    if (!name || !ipAddress || !port || !status)
        return std::nullopt;

    std::optional<QString> model;
    if (object.contains(QLatin1String("model"))) {
        model = json::string(object, QLatin1String("model"));
        if (!model)
            return std::nullopt;
    }
    return Machine{*name, model, *ipAddress, quint16(*port), *status};
}

std::optional<Machine::ConnectionStatus> connectionStatusFromRawValue(const QString& text) {
    return enumFromRawValue<Machine::ConnectionStatus>(text);
}

size_t qHash(const Machine& machine, size_t seed) {
    return qHashMulti(seed, machine.name, machine.model.has_value(),
                      machine.model.value_or(QString()), machine.ipAddress, machine.port,
                      int(machine.status));
}

bool isCanonicalIPv4(QStringView text) {
    const auto pieces = text.split(QLatin1Char('.'));
    if (pieces.size() != 4)
        return false;
    for (const QStringView piece : pieces) {
        if (piece.isEmpty() || piece.size() > 3)
            return false;
        int value = 0;
        for (const QChar c : piece) {
            if (c < QLatin1Char('0') || c > QLatin1Char('9'))
                return false;
            value = value * 10 + (c.unicode() - '0');
        }
        if (value > 255 || (piece.size() > 1 && piece.front() == QLatin1Char('0')))
            return false;
    }
    return true;
}

} // namespace tarnwick
