#include "cli/CheckCommand.h"

#include "cli/Console.h"
#include "cli/MachineAddress.h"
#include "discovery/NetworkMachineConnector.h"

#include <QEventLoop>

namespace tarnwick::cli {

CheckCommand::CheckCommand()
    : Command(QStringLiteral("check"), tr("Checks that a machine accepts a connection"),
              QStringLiteral("tarnwick-cli check ADDRESS[:PORT]"),
              tr("Checks that a machine accepts a TCP connection within %1 seconds. The "
                 "connection is closed at once; nothing is sent.")
                  .arg(NetworkMachineConnector::defaultTimeout.count() / 1000.0)) {
    parser().addPositionalArgument(
        QStringLiteral("ADDRESS"),
        tr("The machine's IPv4 address, with :PORT when its port is not %1.")
            .arg(defaultControllerPort),
        QStringLiteral("ADDRESS[:PORT]"));
}

int CheckCommand::run(const QCommandLineParser& parser) {
    if (parser.positionalArguments().size() != 1)
        return usageError(tr("Usage: %1").arg(usage()));
    const std::optional<Machine> machine = parseMachineAddress(parser.positionalArguments()[0]);
    if (!machine)
        return usageError(invalidAddressMessage());

    NetworkMachineConnector connector;
    QEventLoop loop;
    ConnectionCheck* check = connector.checkConnection(*machine, &loop);
    QObject::connect(check, &Operation::finished, &loop, [&loop, id = machine->id()] {
        out() << tr("%1 accepted the connection.").arg(id) << '\n';
        out().flush();
        loop.exit(Success);
    });
    QObject::connect(check, &Operation::failed, &loop, [&loop](const Error& error) {
        loop.exit(fail(tr("Connection check failed: %1").arg(error.description()), Failure));
    });
    return loop.exec();
}

} // namespace tarnwick::cli
