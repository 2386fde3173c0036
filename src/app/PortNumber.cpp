#include "app/PortNumber.h"

namespace tarnwick {

std::optional<quint16> parsePortNumber(QStringView text) {
    if (text.startsWith(u'+'))
        text = text.sliced(1);
    if (text.isEmpty())
        return std::nullopt;
    quint32 value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        value = value * 10 + quint32(c.unicode() - u'0');
        if (value > 65535)
            return std::nullopt;
    }
    if (value == 0)
        return std::nullopt;
    return quint16(value);
}

} // namespace tarnwick
