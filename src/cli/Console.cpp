#include "cli/Console.h"

#include <QJsonDocument>

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tarnwick::cli {

QTextStream& out() {
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err() {
    static QTextStream stream(stderr);
    return stream;
}

void printJsonLine(const QJsonObject& object) {
    out() << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) << '\n';
    out().flush();
}

int fail(const QString& message, ExitCode code) {
    err() << message << '\n';
    err().flush();
    return code;
}

bool isTerminal(FILE* stream) {
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream));
#else
    return isatty(fileno(stream));
#endif
}

} // namespace tarnwick::cli
