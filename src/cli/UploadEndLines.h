#pragma once

#include "cli/ExitCode.h"
#include "cli/PairUpload.h"

namespace tarnwick::cli {

// A failure as the upload command reports it, before or after anything was sent: on standard
// error with its advice beneath it, and with --json also as {"error", "kind", "advice"}.
void reportFailure(const QString& message, ExitCode code, bool json, const QString& advice = {});

// The line a successful upload leaves: where the file went.
QString uploadedLine(const UploadPair& pair);

} // namespace tarnwick::cli
