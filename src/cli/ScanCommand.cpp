#include "cli/ScanCommand.h"

#include "app/DisplayName.h"
#include "app/PortNumber.h"
#include "cli/Console.h"
#include "discovery/LANMachineDiscoverer.h"

#include <QEventLoop>

#include <cmath>
#include <optional>

namespace tarnwick::cli {

namespace {

constexpr double longestScanSeconds = 3600;

std::optional<std::chrono::milliseconds> parseSeconds(const QString& text) {
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    if (!ok || !std::isfinite(seconds) || seconds <= 0 || seconds > longestScanSeconds)
        return std::nullopt;
    return std::chrono::milliseconds(qint64(std::ceil(seconds * 1000)));
}

void printMachine(const Machine& machine, bool json) {
    if (json) {
        printJsonLine(machine.toJson());
        return;
    }
    out() << displayName(machine.name) << '\t' << machine.id() << '\t' << rawValue(machine.status)
          << '\n';
    out().flush();
}

} // namespace

ScanCommand::ScanCommand()
    : Command(QStringLiteral("scan"),
              tr("Lists the machines that announce themselves on the local network"),
              QStringLiteral("tarnwick-cli scan [--seconds S] [--json]"),
              tr("Listens for machines that announce themselves on the local network and "
                 "prints each once, as soon as it is heard: NAME, ADDRESS:PORT and STATUS "
                 "separated by tabs. Sends nothing."))
    , m_seconds(QStringLiteral("seconds"), tr("Listens for S seconds (default 3)."),
                QStringLiteral("S"), QStringLiteral("3"))
    , m_json(QStringLiteral("json"),
             tr("Prints each machine as one JSON object per line, with the keys name, "
                "ipAddress, port and status."))
    , m_port(QStringLiteral("port"),
             tr("Listens on UDP port N instead of %1 (for testing with a simulated machine that "
                "announces itself on another port).")
                 .arg(LANMachineDiscoverer::announcementPort),
             QStringLiteral("N")) {
    parser().addOptions({m_seconds, m_json, m_port});
}

int ScanCommand::run(const QCommandLineParser& parser) {
    if (!parser.positionalArguments().isEmpty())
        return usageError(tr("scan takes no arguments besides its options."));
    const auto duration = parseSeconds(parser.value(m_seconds));
    if (!duration)
        return usageError(tr("--seconds takes a number of seconds greater than 0 and at most %1.")
                              .arg(longestScanSeconds));
    std::optional<quint16> listeningPort = LANMachineDiscoverer::announcementPort;
    if (parser.isSet(m_port)) {
        listeningPort = parsePortNumber(parser.value(m_port));
        if (!listeningPort)
            return usageError(tr("--port takes a port number from 1 to 65535."));
    }

    LANMachineDiscoverer discoverer(*listeningPort);
    QEventLoop loop;
    MachineScan* scan = discoverer.discover(*duration, &loop);
    const bool printJson = parser.isSet(m_json);
    QObject::connect(scan, &MachineScan::machineFound, &loop,
                     [printJson](const Machine& machine) { printMachine(machine, printJson); });
    QObject::connect(scan, &Operation::finished, &loop, [&loop] { loop.exit(Success); });
    QObject::connect(scan, &Operation::failed, &loop, [&loop](const Error& error) {
        loop.exit(fail(discoveryFailureMessage(error), Failure));
    });
    return loop.exec();
}

} // namespace tarnwick::cli
