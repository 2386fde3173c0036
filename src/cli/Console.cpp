#include "cli/Console.h"

#include <QJsonDocument>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
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

int terminalColumns() {
#ifdef Q_OS_WIN
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
#else
    winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
#endif
}

void prepareConsole() {
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(output, &mode))
        SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
#endif
}

} // namespace tarnwick::cli
