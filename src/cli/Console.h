#pragma once

#include <QJsonObject>
#include <QTextStream>

namespace tarnwick::cli {

enum ExitCode : int {
    Success = 0,
    Failure = 1,
    Usage = 2
};

QTextStream& out();
QTextStream& err();

// One compact JSON object on its own line of standard output, flushed at once so that a
// reading script sees it immediately.
void printJsonLine(const QJsonObject& object);

// Prints the message on standard error and returns the exit code, for one-line early exits.
int fail(const QString& message, ExitCode code);

bool isTerminal(FILE* stream);

} // namespace tarnwick::cli
