#include "cli/UploadCommand.h"

#include "app/DisplayName.h"
#include "app/PortNumber.h"
#include "app/SettingsStore.h"
#include "cli/Console.h"
#include "cli/InterruptNotifier.h"
#include "cli/MachineTargets.h"
#include "cli/UploadEndLines.h"
#include "cli/UploadOutput.h"
#include "discovery/LANMachineDiscoverer.h"
#include "transfer/MakeraFilename.h"
#include "transfer/UploadLog.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QLoggingCategory>

namespace tarnwick::cli {

namespace {

// Why a job file cannot go to any machine, told before anything is sent; none when it can.
std::optional<QString> unsendable(const Result<JobFile>& file) {
    if (!file)
        return file.error().description();
    if (const std::optional<JobFileError> refusal =
            MakeraFilename::controlCharacterRefusal(file->fileName()))
        return refusal->description();
    if (file->size == 0)
        return UploadCommand::tr("%1 is empty, so there is nothing to send.").arg(file->fileName());
    return std::nullopt;
}

} // namespace

UploadCommand::UploadCommand()
    : Command(
          QStringLiteral("upload"), tr("Sends job files to machines without starting them"),
          QStringLiteral("tarnwick-cli upload FILE... --to MACHINE [--to MACHINE ...] [--again] "
                         "[--busy-ok] [--json]"),
          tr("Sends job files (.nc, .cnc or .gcode) into each machine's folder %1. "
             "The jobs are not started. Every file goes to every machine: one file at a time "
             "per machine, in the order given, and the machines in parallel.\n"
             "Ctrl-C, SIGTERM or SIGHUP cancels the uploads and tells the machines.\n\n"
             "Exit codes (with several uploads, the first failure in the order of the files, "
             "then of the machines):\n"
             "  0  uploaded; each upload is added to the upload history\n"
             "  1  any other failure\n"
             "  2  bad usage, an unusable file or an invalid address; nothing was sent\n"
             "  3  machine unreachable (refused, connection time-out, network error before the "
             "transfer, which begins when the machine takes the upload command), or no machine "
             "of that name answered\n"
             "  4  refused by the machine, or by its rules (a name it cannot take)\n"
             "  5  timed out waiting for the machine\n"
             "  6  cancelled by the user or a signal\n"
             "  7  sent to this machine in the last 24 hours (see --again)\n"
             "  8  the job file changed or became unreadable during the upload")
              .arg(QLatin1String(machineJobFolder)))
    , m_to(MachineTargets::option())
    , m_again(QStringLiteral("again"),
              tr("Send a file even if it went to the machine in the last 24 hours."))
    , m_busyOk(QStringLiteral("busy-ok"),
               tr("Send to a machine found by name even if it announces itself busy."))
    , m_json(QStringLiteral("json"),
             tr("Print one JSON object per line: per progress value {\"phase\", \"bytesSent\", "
                "\"totalBytes\", \"bytesPerSecond\"} (while the file is checked {\"phase\": "
                "\"checking\", \"bytesChecked\", \"totalBytes\"}), on failure {\"error\", "
                "\"kind\"} with kind one of failed, usage, unreachable, refused, timeout, "
                "cancelled, duplicate, file, and {\"warning\"} when the history could not be "
                "saved. With several uploads every line also has \"file\" and \"machine\", each "
                "upload ends with a line holding its \"exitCode\", and a last line sums up."))
    , m_discoveryPort(QStringLiteral("discovery-port"), QString(), QStringLiteral("N")) {
    m_discoveryPort.setFlags(QCommandLineOption::HiddenFromHelp);
    parser().addPositionalArgument(QStringLiteral("FILE"), tr("The job files to send."),
                                   QStringLiteral("FILE..."));
    parser().addOptions({m_to, m_again, m_busyOk, m_json, m_discoveryPort});
}

int UploadCommand::run(const QCommandLineParser& parser) {
    const bool json = parser.isSet(m_json);
    if (parser.positionalArguments().isEmpty() || !parser.isSet(m_to))
        return usageError(tr("Usage: %1").arg(usage()));

    // Everything is checked before anything is sent.
    QList<JobFile> files;
    for (const QString& argument : parser.positionalArguments()) {
        const Result<JobFile> file =
            JobFile::fromUrl(QUrl::fromLocalFile(QFileInfo(argument).absoluteFilePath()));
        if (const std::optional<QString> problem = unsendable(file)) {
            reportFailure(*problem, Usage, json);
            return Usage;
        }
        files.append(file.value());
    }
    // From here on a signal cancels, whatever is under way.
    InterruptNotifier interrupt;
    int exitCode = Success;
    const std::optional<QList<UploadPair>> machines = destinations(parser, interrupt, exitCode);
    if (!machines)
        return exitCode;
    return send(files, *machines, parser, interrupt);
}

std::optional<QList<UploadPair>> UploadCommand::destinations(const QCommandLineParser& parser,
                                                             InterruptNotifier& interrupt,
                                                             int& exitCode) {
    quint16 announcementPort = LANMachineDiscoverer::announcementPort;
    if (parser.isSet(m_discoveryPort)) {
        const std::optional<quint16> port = parsePortNumber(parser.value(m_discoveryPort));
        if (!port) {
            exitCode = usageError(tr("--discovery-port takes a port number from 1 to 65535."));
            return std::nullopt;
        }
        announcementPort = *port;
    }
    const std::optional<QList<Machine>> machines = MachineTargets::resolve(
        parser.values(m_to), announcementPort, interrupt, parser.isSet(m_json), exitCode);
    if (!machines)
        return std::nullopt;

    QList<UploadPair> destinations;
    for (const Machine& machine : *machines) {
        UploadPair destination{{}, machine, std::nullopt};
        if (machine.status == Machine::ConnectionStatus::Busy && !parser.isSet(m_busyOk))
            destination.skipReason = tr("“%1” at %2 is busy, so nothing was sent to it. Add "
                                        "--busy-ok to send to it anyway.")
                                         .arg(displayName(machine.name), machine.id());
        destinations.append(destination);
    }
    return destinations;
}

int UploadCommand::send(const QList<JobFile>& files, const QList<UploadPair>& machines,
                        const QCommandLineParser& parser, InterruptNotifier& interrupt) {
    // The uploader's log is for diagnosis (QT_LOGGING_RULES turns it on); the user reads the
    // outcome.
    QLoggingCategory::setFilterRules(QLatin1String(uploadLog().categoryName()) +
                                     QStringLiteral("=false"));
    AppPersistence persistence(openStandardStore());
    UploadBatch batch(files, machines, parser.isSet(m_again), persistence);
    const std::unique_ptr<UploadOutput> output = UploadOutput::create(batch, parser.isSet(m_json));
    QObject::connect(&batch, &UploadBatch::pairChecking, &batch,
                     [&output](qsizetype index, qint64 done, qint64 total) {
                         output->checking(index, done, total);
                     });
    QObject::connect(&batch, &UploadBatch::pairProgress, &batch,
                     [&output](qsizetype index, const TransferProgress& progress) {
                         output->progress(index, progress);
                     });
    QObject::connect(
        &batch, &UploadBatch::pairEnded, &batch,
        [&output](qsizetype index, const PairOutcome& outcome) { output->ended(index, outcome); });

    QEventLoop loop;
    QObject::connect(&batch, &UploadBatch::finished, &loop, [&] {
        output->finished();
        loop.exit(batch.exitCode());
    });
    QObject::connect(&interrupt, &InterruptNotifier::interrupted, &batch, &UploadBatch::cancelAll);
    // Started from the loop, so that pairs which end at once are seen by it.
    QMetaObject::invokeMethod(&batch, &UploadBatch::start, Qt::QueuedConnection);
    return loop.exec();
}

} // namespace tarnwick::cli
