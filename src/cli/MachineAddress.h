#pragma once

#include "app/Machine.h"

#include <QCoreApplication>

#include <optional>

namespace tarnwick::cli {

// "ADDRESS[:PORT]" with the manual-entry rule: a canonical dotted-decimal IPv4 address and a
// port number, 2222 when left out.
std::optional<Machine> parseMachineAddress(const QString& text);

// Digits and dots, with anything after a colon: meant as an address, so a typing mistake in it
// reads as a wrong address and never as the name of a machine.
bool looksLikeAddress(const QString& text);

inline QString invalidAddressMessage() {
    return QCoreApplication::translate("cli", "Enter a valid IPv4 address and port.");
}

} // namespace tarnwick::cli
