#include "cli/WatchCommand.h"

#include "app/PortNumber.h"
#include "app/SettingsStore.h"
#include "cli/FolderDelivery.h"
#include "cli/InterruptNotifier.h"
#include "cli/MachineTargets.h"
#include "discovery/LANMachineDiscoverer.h"
#include "transfer/UploadLog.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QLoggingCategory>

namespace tarnwick::cli {

WatchCommand::WatchCommand()
    : Command(QStringLiteral("watch"),
              tr("Sends each new or changed job file of a folder to machines"),
              QStringLiteral("tarnwick-cli watch DIR --to MACHINE [--to MACHINE ...] [--once] "
                             "[--json]"),
              tr("Watches a folder and sends each job file (.nc, .cnc or .gcode) that appears in "
                 "it or changes into each machine's folder %1, replacing the machine's copy. The "
                 "jobs are not started. A file is sent once its size and modification time have "
                 "stayed the same for two seconds; hidden and temporary files (a leading dot, a "
                 "trailing ~, .tmp, .part) are ignored. A file whose content a machine already "
                 "got from a watch is not sent to it again. A machine that announces itself busy "
                 "gets its files when it announces itself idle; one that cannot be reached is "
                 "tried again, after pauses of up to a minute. The folder is only read. Every "
                 "upload is added to the upload history.\n"
                 "Runs until Ctrl-C, SIGTERM or SIGHUP, which cancels the uploads under way and "
                 "tells the machines.\n\n"
                 "Exit codes: 0 when stopped, 2 bad usage or no such folder, 3 when a name is "
                 "not heard, 6 cancelled. With --once, the class of the first failure, as the "
                 "upload command has them.")
                  .arg(QLatin1String(machineJobFolder)))
    , m_to(MachineTargets::option())
    , m_json(QStringLiteral("json"),
             tr("Print one JSON object per line and event: {\"event\"} with event one of "
                "watching, folderMissing, folderBack, seen, sent, unchanged, failed, busy, "
                "unreachable; \"file\" or \"folder\" and \"machine\" where they apply; a failure "
                "with {\"error\", \"kind\"}, a wait for an unreachable machine with "
                "{\"retryInSeconds\"}."))
    , m_once(QStringLiteral("once"),
             tr("Send the complete job files that are in the folder now, then exit. A busy or "
                "unreachable machine is not waited for."))
    , m_discoveryPort(QStringLiteral("discovery-port"), QString(), QStringLiteral("N")) {
    m_discoveryPort.setFlags(QCommandLineOption::HiddenFromHelp);
    parser().addPositionalArgument(QStringLiteral("DIR"), tr("The folder to watch."));
    parser().addOptions({m_to, m_json, m_once, m_discoveryPort});
}

int WatchCommand::run(const QCommandLineParser& parser) {
    const bool json = parser.isSet(m_json);
    const bool once = parser.isSet(m_once);
    if (parser.positionalArguments().size() != 1 || !parser.isSet(m_to))
        return usageError(tr("Usage: %1").arg(usage()));
    const QString folder = parser.positionalArguments().constFirst();
    if (!QFileInfo(folder).isDir())
        return usageError(tr("%1 is not a folder.").arg(QDir::toNativeSeparators(folder)));
    quint16 announcementPort = LANMachineDiscoverer::announcementPort;
    if (parser.isSet(m_discoveryPort)) {
        const std::optional<quint16> port = parsePortNumber(parser.value(m_discoveryPort));
        if (!port)
            return usageError(tr("--discovery-port takes a port number from 1 to 65535."));
        announcementPort = *port;
    }

    InterruptNotifier interrupt;
    int exitCode = Success;
    const std::optional<QList<Machine>> machines =
        MachineTargets::resolve(parser.values(m_to), announcementPort, interrupt, json, exitCode);
    if (!machines)
        return exitCode;

    // The uploader's log is for diagnosis; the user reads the events.
    QLoggingCategory::setFilterRules(QLatin1String(uploadLog().categoryName()) +
                                     QStringLiteral("=false"));
    AppPersistence history(openStandardStore());
    FolderDelivery delivery(
        folder, *machines, announcementPort, history, [] { return openStandardStore(); }, once);
    QObject::connect(&delivery, &FolderDelivery::event, &delivery,
                     [json](const WatchEvent& event) { event.print(json); });
    bool interrupted = false;
    QObject::connect(&interrupt, &InterruptNotifier::interrupted, &delivery, [&] {
        interrupted = true;
        delivery.stop();
    });
    QEventLoop loop;
    QObject::connect(&delivery, &FolderDelivery::finished, &loop, [&] {
        if (!once)
            loop.exit(Success);
        else
            loop.exit(interrupted ? Cancelled : delivery.exitCode());
    });
    QMetaObject::invokeMethod(&delivery, &FolderDelivery::start, Qt::QueuedConnection);
    return loop.exec();
}

} // namespace tarnwick::cli
