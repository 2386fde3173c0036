#include "cli/Command.h"

#include "cli/Console.h"

namespace tarnwick::cli {

Command::Command(QString name, QString summary, QString usage, QString description)
    : m_name(std::move(name))
    , m_summary(std::move(summary))
    , m_usage(std::move(usage))
    , m_help(QStringList{QStringLiteral("h"), QStringLiteral("help")}, tr("Shows this help.")) {
    m_parser.setApplicationDescription(description);
    m_parser.addOption(m_help);
}

int Command::execute(const QStringList& arguments) {
    if (!m_parser.parse(arguments))
        return usageError(m_parser.errorText());
    if (m_parser.isSet(m_help)) {
        // Qt's first line names the program file; ours names the command as it is typed.
        QString help = m_parser.helpText();
        help.replace(0, help.indexOf(u'\n'), tr("Usage: %1").arg(m_usage));
        out() << help;
        out().flush();
        return Success;
    }
    return run(m_parser);
}

int Command::usageError(const QString& message) {
    return fail(message, Usage);
}

} // namespace tarnwick::cli
