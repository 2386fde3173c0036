#pragma once

#include <QSettings>

#include <memory>

namespace tarnwick {

// The settings store that the desktop app and the command-line tool share: the defaults domain
// on macOS, the registry on Windows, an INI file under $XDG_CONFIG_HOME on Linux.
std::unique_ptr<QSettings> openStandardStore();

// Sets the organisation and application names once per process, so that every store opened with
// QSettings' default constructor is the standard one.
void setApplicationIdentity();

} // namespace tarnwick
