#pragma once

#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarnwick {

// The text command that opens a transfer into the machine's job folder.
namespace MakeraFilename {

// Refuses a name holding a control character (U+0000 to U+001F, U+007F, U+2028, U+2029): a line
// feed or carriage return would put a line of its own on the machine's console, and the bytes
// 0x01 to 0x05 would read as escaped characters. The error names the file with each control
// character shown as its visible symbol.
std::optional<JobFileError> controlCharacterRefusal(const QString& name);

// "upload /sd/gcodes/" + the escaped name + a line feed, as UTF-8. Refuses a name with a control
// character, and a name that would leave the folder: one holding a slash or backslash, or
// exactly "." or "..".
Result<QByteArray> uploadCommand(const QString& name);

} // namespace MakeraFilename

} // namespace tarnwick
