#pragma once

#include "cli/ExitCode.h"
#include "cli/PairUpload.h"

namespace tarnwick::cli {

// A failure as the upload command reports it, before or after anything was sent: on standard
// error, and with --json also as {"error", "kind"}.
void reportFailure(const QString& message, ExitCode code, bool json);

// The line a successful upload leaves: where the file went.
QString uploadedLine(const UploadPair& pair);

} // namespace tarnwick::cli
