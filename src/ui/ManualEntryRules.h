#pragma once

#include <QString>

#include <optional>

namespace tarnwick::ui {

// A port typed by hand: an optional "+" and decimal digits for a number from 0 to 65535.
std::optional<quint16> parsePortText(const QString& text);

// Whether "Add" may be pressed: an address and a port that reads as a number.
bool canAddManualMachine(const QString& address, const QString& port);

// The port that "Add" passes on: the typed one, or the machines' usual port when the text is
// not a port.
quint16 portForManualEntry(const QString& port);

} // namespace tarnwick::ui
