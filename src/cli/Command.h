#pragma once

#include "cli/ExitCode.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace tarnwick::cli {

// One subcommand of tarnwick-cli. The base owns the option parser, --help and the usage line;
// a subclass declares its options in its constructor and does its work in run().
class Command {
    Q_DECLARE_TR_FUNCTIONS(Command)

public:
    virtual ~Command() = default;

    const QString& name() const { return m_name; }
    const QString& summary() const { return m_summary; }

    // `arguments` starts with the program's name; the command's name is already removed.
    // Returns the exit code.
    int execute(const QStringList& arguments);

protected:
    // `usage` is the synopsis after "Usage: ", e.g. "tarnwick-cli check ADDRESS[:PORT]".
    Command(QString name, QString summary, QString usage, QString description);

    QCommandLineParser& parser() { return m_parser; }
    const QString& usage() const { return m_usage; }
    // A usage error: the message on standard error, the usage exit code.
    static int usageError(const QString& message);

    virtual int run(const QCommandLineParser& parser) = 0;

private:
    QString m_name;
    QString m_summary;
    QString m_usage;
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
};

} // namespace tarnwick::cli
