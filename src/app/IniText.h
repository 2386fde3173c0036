#pragma once

#include <QByteArray>
#include <QSettings>

#include <optional>

namespace tarnwick::settings {

// The text of a settings file, in the INI form that QSettings itself writes and reads, so that a
// store written before keeps reading. Values are QSettings' own: a byte array as
// "@ByteArray(…)", a text as itself, other types as "@Variant(…)".
QByteArray iniText(const QSettings::SettingsMap& values);

// Nothing when the text is not such a file: not UTF-8, a line that is neither a section, a key
// and its value nor a comment, or an escape or quote left open.
std::optional<QSettings::SettingsMap> parseIniText(const QByteArray& text);

} // namespace tarnwick::settings
