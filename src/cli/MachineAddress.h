#pragma once

#include "app/Machine.h"

#include <optional>

namespace tarnwick::cli {

inline constexpr quint16 defaultControllerPort = 2222;

// "ADDRESS[:PORT]" with the manual-entry rule: a canonical dotted-decimal IPv4 address and a
// decimal port from 1 to 65535, 2222 when left out.
std::optional<Machine> parseMachineAddress(const QString& text);

inline const QString invalidAddressMessage = QStringLiteral("Enter a valid IPv4 address and port.");

} // namespace tarnwick::cli
