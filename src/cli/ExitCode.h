#pragma once

#include "app/Errors.h"

#include <QString>

namespace tarnwick::cli {

// The classes of outcome a script can tell apart without reading any text.
enum ExitCode : int {
    Success = 0,
    Failure = 1,
    Usage = 2,
    Unreachable = 3,
    Refused = 4,
    TimedOut = 5,
    Cancelled = 6,
    Duplicate = 7,
    FileChanged = 8
};

// How far an upload had come when it failed: a time-out or a network error before the machine
// took part means the machine was never reached, and afterwards that it stopped answering. An
// error that came after the machine took the upload command (Error::uploadStage()) counts as
// transferring.
struct UploadReach {
    bool connected = false;
    bool transferring = false;
};

ExitCode exitCodeFor(const Error& error, UploadReach reach);

// One untranslated word per class for JSON output; empty for success.
QString kindName(ExitCode code);

} // namespace tarnwick::cli
