#include "update/AppVersion.h"

#include <QStringList>

#include <algorithm>

namespace tarnwick {

namespace {

// QVersionNumber cannot carry these versions: its components are int, it takes no sign, stops at
// the first piece that is not a number instead of refusing the text, and orders 1.2 before 1.2.0.

// An optional "+" or "-" and one or more ASCII digits; QString's own conversion would also
// accept surrounding blanks, which a piece must not have.
std::optional<qint64> readComponent(QStringView piece) {
    const QStringView digits =
        piece.startsWith(u'+') || piece.startsWith(u'-') ? piece.sliced(1) : piece;
    if (digits.isEmpty())
        return std::nullopt;
    if (!std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    bool ok = false;
    const qint64 value = piece.toLongLong(&ok, 10);
    if (!ok)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<AppVersion> AppVersion::fromText(QStringView text) {
    QList<qint64> components;
    for (QStringView piece : text.trimmed().split(u'.', Qt::SkipEmptyParts)) {
        const std::optional<qint64> component = readComponent(piece);
        if (!component)
            return std::nullopt;
        components.append(*component);
    }
    if (components.isEmpty())
        return std::nullopt;
    return AppVersion(std::move(components));
}

QString AppVersion::description() const {
    QStringList pieces;
    pieces.reserve(m_components.size());
    for (qint64 component : m_components)
        pieces.append(QString::number(component));
    return pieces.join(u'.');
}

std::weak_ordering operator<=>(const AppVersion& a, const AppVersion& b) {
    const qsizetype length = std::max(a.m_components.size(), b.m_components.size());
    for (qsizetype i = 0; i < length; ++i) {
        const qint64 left = a.m_components.value(i, 0);
        const qint64 right = b.m_components.value(i, 0);
        if (left != right)
            return left < right ? std::weak_ordering::less : std::weak_ordering::greater;
    }
    return std::weak_ordering::equivalent;
}

} // namespace tarnwick
