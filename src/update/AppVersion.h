#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <compare>
#include <optional>

namespace tarnwick {

// A dotted version number such as 1.4.2. Versions compare component by component, a missing
// component counting as 0, so 1.2 and 1.2.0 are equal although their components differ.
class AppVersion {
public:
    // The version 0, with no components; a version read from text always has at least one.
    AppVersion() = default;
    explicit AppVersion(QList<qint64> components)
        : m_components(std::move(components)) {}

    // Surrounding white space is ignored and empty pieces between dots are dropped; every other
    // piece must be an optional sign and decimal digits that fit in 64 bits.
    static std::optional<AppVersion> fromText(QStringView text);

    const QList<qint64>& components() const { return m_components; }

    // The components in decimal joined by ".".
    QString description() const;

    friend std::weak_ordering operator<=>(const AppVersion& a, const AppVersion& b);
    friend bool operator==(const AppVersion& a, const AppVersion& b) {
        return (a <=> b) == std::weak_ordering::equivalent;
    }

private:
    QList<qint64> m_components;
};

} // namespace tarnwick
