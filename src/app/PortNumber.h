#pragma once

#include <QStringView>

#include <optional>

namespace tarnwick {

// A TCP or UDP port as people and machines write it: decimal digits after at most one leading
// plus sign, with a value from 1 to 65535. Anything else (blanks, signs, other digits, 0) is no
// port, so that an address typed by hand and one announced by a machine pass the same rule.
std::optional<quint16> parsePortNumber(QStringView text);

} // namespace tarnwick
