#pragma once

#include "cli/ExitCode.h"

#include <QJsonObject>
#include <QTextStream>

#include <cstdio>

namespace tarnwick::cli {

QTextStream& out();
QTextStream& err();

// One compact JSON object on its own line of standard output, flushed at once so that a
// reading script sees it immediately.
void printJsonLine(const QJsonObject& object);

// Prints the message on standard error and returns the exit code, for one-line early exits.
int fail(const QString& message, ExitCode code);

bool isTerminal(FILE* stream);
// The width of the terminal behind standard output; 0 when it cannot be told.
int terminalColumns();

// UTF-8 and escape sequences on a Windows console; nothing to do elsewhere.
void prepareConsole();

} // namespace tarnwick::cli
