#pragma once

#include <QString>

namespace tarnwick {

// A machine's name, as it arrived from the network, made fit to be shown on one line among other
// text: control characters and line breaks become visible symbols, and a name that carries
// right-to-left text or direction marks is isolated, so that it cannot reorder what follows it.
// Names of plain left-to-right text come back unchanged.
QString displayName(const QString& announcedName);

} // namespace tarnwick
