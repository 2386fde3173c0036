#pragma once

#include "app/JobFile.h"
#include "app/Result.h"

#include <QByteArray>
#include <QString>

namespace tarnwick {

// The text command that opens a transfer into the machine's job folder.
namespace MakeraFilename {

// "upload /sd/gcodes/" + the escaped name + a line feed, as UTF-8. Refuses a name that would
// leave the folder: one holding a slash or backslash, or exactly "." or "..".
Result<QByteArray> uploadCommand(const QString& name);

} // namespace MakeraFilename

} // namespace tarnwick
