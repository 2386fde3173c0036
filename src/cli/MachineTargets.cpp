#include "cli/MachineTargets.h"

#include "cli/InterruptNotifier.h"
#include "cli/MachineAddress.h"
#include "cli/MachineNameResolver.h"
#include "cli/UploadEndLines.h"

#include <QEventLoop>
#include <QSet>

namespace tarnwick::cli {

QCommandLineOption MachineTargets::option() {
    return {QStringLiteral("to"),
            tr("A machine: its IPv4 address, with the controller's port (%1 when left out), or "
               "the name it announces on the local network, in any letter case (the tool listens "
               "for three seconds, and a name that two machines share is refused). Repeat for "
               "several machines.")
                .arg(defaultControllerPort),
            QStringLiteral("MACHINE")};
}

namespace {

// Listens for the whole discovery window; the exit code of what stopped it.
int resolveNames(const QStringList& names, MachineNameResolver& resolver,
                 InterruptNotifier& interrupt, bool json) {
    QObject::connect(&interrupt, &InterruptNotifier::interrupted, &resolver,
                     &MachineNameResolver::cancel);
    QEventLoop loop;
    std::optional<Error> failure;
    QObject::connect(&resolver, &MachineNameResolver::finished, &loop, &QEventLoop::quit);
    QObject::connect(&resolver, &MachineNameResolver::failed, &loop, [&](const Error& error) {
        failure = error;
        loop.quit();
    });
    resolver.resolve(names);
    loop.exec();
    if (!failure)
        return Success;
    if (failure->is<CancellationError>()) {
        reportFailure(UploadError::cancelled().description(), Cancelled, json);
        return Cancelled;
    }
    reportFailure(discoveryFailureMessage(*failure), Failure, json);
    return Failure;
}

} // namespace

std::optional<QList<Machine>> MachineTargets::resolve(const QStringList& targets,
                                                      quint16 announcementPort,
                                                      InterruptNotifier& interrupt, bool json,
                                                      int& exitCode) {
    QStringList names;
    for (const QString& target : targets) {
        if (parseMachineAddress(target))
            continue;
        if (looksLikeAddress(target)) {
            reportFailure(invalidAddressMessage(), Usage, json);
            exitCode = Usage;
            return std::nullopt;
        }
        names.append(target);
    }

    MachineNameResolver resolver(announcementPort);
    if (!names.isEmpty()) {
        exitCode = resolveNames(names, resolver, interrupt, json);
        if (exitCode != Success)
            return std::nullopt;
    }

    QList<Machine> machines;
    QSet<QString> ids;
    for (const QString& target : targets) {
        Machine machine;
        if (const std::optional<Machine> address = parseMachineAddress(target)) {
            machine = *address;
        } else {
            const QList<Machine> named = resolver.machinesNamed(target);
            if (named.size() != 1) {
                const ExitCode code = named.isEmpty() ? Unreachable : Usage;
                QStringList addresses;
                for (const Machine& heard : named)
                    addresses.append(heard.id());
                reportFailure(
                    named.isEmpty()
                        ? tr("No machine named “%1” answered the scan.").arg(target)
                        : tr("More than one machine is named “%1”: %2. Give its address instead.")
                              .arg(target, addresses.join(QStringLiteral(", "))),
                    code, json);
                if (exitCode == Success)
                    exitCode = code;
                continue;
            }
            machine = named.first();
        }
        // One upload at a time per machine, however often it is named.
        if (!ids.contains(machine.id())) {
            ids.insert(machine.id());
            machines.append(machine);
        }
    }
    if (exitCode != Success)
        return std::nullopt;
    return machines;
}

} // namespace tarnwick::cli
