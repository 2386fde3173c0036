#pragma once

#include <QCommandLineParser>

namespace tarnwick::cli {

// The parser's help with a usage line that names the subcommand, not the program's path.
inline QString commandHelp(const QCommandLineParser& parser, const QString& usage) {
    QString help = parser.helpText();
    help.replace(0, help.indexOf(QLatin1Char('\n')), QStringLiteral("Usage: ") + usage);
    return help;
}

} // namespace tarnwick::cli
