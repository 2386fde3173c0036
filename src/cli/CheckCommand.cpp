#include "cli/CommandHelp.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/MachineAddress.h"
#include "discovery/NetworkMachineConnector.h"

#include <QCommandLineParser>
#include <QEventLoop>

namespace tarnwick::cli {

int runCheck(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Checks that a machine accepts a TCP connection within %1 seconds. The "
                       "connection is closed at once; nothing is sent.")
            .arg(NetworkMachineConnector::defaultTimeout.count() / 1000.0));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    parser.addOption(help);
    parser.addPositionalArgument(
        QStringLiteral("ADDRESS"),
        QStringLiteral("The machine's IPv4 address, with :PORT when its port is not %1.")
            .arg(defaultControllerPort),
        QStringLiteral("ADDRESS[:PORT]"));

    if (!parser.parse(arguments))
        return fail(parser.errorText(), Usage);
    if (parser.isSet(help)) {
        out() << commandHelp(parser, QStringLiteral("tarnwick-cli check ADDRESS[:PORT]"));
        out().flush();
        return Success;
    }
    if (parser.positionalArguments().size() != 1)
        return fail(QStringLiteral("Usage: tarnwick-cli check ADDRESS[:PORT]"), Usage);

    const std::optional<Machine> machine = parseMachineAddress(parser.positionalArguments()[0]);
    if (!machine)
        return fail(invalidAddressMessage, Usage);

    NetworkMachineConnector connector;
    QEventLoop loop;
    ConnectionCheck* check = connector.checkConnection(*machine, &loop);
    QObject::connect(check, &Operation::finished, &loop, [&loop, id = machine->id()] {
        out() << id << " accepted the connection.\n";
        out().flush();
        loop.exit(Success);
    });
    QObject::connect(check, &Operation::failed, &loop, [&loop](const Error& error) {
        loop.exit(fail(QStringLiteral("Connection check failed: ") + error.description(), Failure));
    });
    return loop.exec();
}

} // namespace tarnwick::cli
