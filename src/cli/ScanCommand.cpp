#include "cli/CommandHelp.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "discovery/LANMachineDiscoverer.h"

#include <QCommandLineParser>
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

std::optional<quint16> parsePort(const QString& text) {
    bool ok = false;
    const uint port = text.toUInt(&ok);
    if (!ok || port == 0 || port > 65535)
        return std::nullopt;
    return quint16(port);
}

// One machine per line whatever its announced name holds.
QString printableName(QString name) {
    for (QChar& c : name) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return name;
}

void printMachine(const Machine& machine, bool json) {
    if (json) {
        printJsonLine(machine.toJson());
        return;
    }
    out() << printableName(machine.name) << '\t' << machine.id() << '\t' << rawValue(machine.status)
          << '\n';
    out().flush();
}

} // namespace

int runScan(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Listens for machines that announce themselves on the local network and "
                       "prints each once, as soon as it is heard: NAME, ADDRESS:PORT and STATUS "
                       "separated by tabs. Sends nothing."));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    const QCommandLineOption seconds(QStringLiteral("seconds"),
                                     QStringLiteral("Listens for S seconds (default 3)."),
                                     QStringLiteral("S"), QStringLiteral("3"));
    const QCommandLineOption json(
        QStringLiteral("json"),
        QStringLiteral("Prints each machine as one JSON object per line, with the keys name, "
                       "ipAddress, port and status."));
    const QCommandLineOption port(
        QStringLiteral("port"),
        QStringLiteral("Listens on UDP port N instead of %1 (for testing with a simulated "
                       "machine that announces itself on another port).")
            .arg(LANMachineDiscoverer::announcementPort),
        QStringLiteral("N"));
    parser.addOptions({help, seconds, json, port});

    if (!parser.parse(arguments))
        return fail(parser.errorText(), Usage);
    if (parser.isSet(help)) {
        out() << commandHelp(parser, QStringLiteral("tarnwick-cli scan [--seconds S] [--json]"));
        out().flush();
        return Success;
    }
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("scan takes no arguments besides its options."), Usage);

    const auto duration = parseSeconds(parser.value(seconds));
    if (!duration)
        return fail(QStringLiteral("--seconds takes a number of seconds greater than 0 and at "
                                   "most %1.")
                        .arg(longestScanSeconds),
                    Usage);
    std::optional<quint16> listeningPort = LANMachineDiscoverer::announcementPort;
    if (parser.isSet(port)) {
        listeningPort = parsePort(parser.value(port));
        if (!listeningPort)
            return fail(QStringLiteral("--port takes a port number from 1 to 65535."), Usage);
    }

    LANMachineDiscoverer discoverer(*listeningPort);
    QEventLoop loop;
    MachineScan* scan = discoverer.discover(*duration, &loop);
    const bool printJson = parser.isSet(json);
    QObject::connect(scan, &MachineScan::machineFound, &loop,
                     [printJson](const Machine& machine) { printMachine(machine, printJson); });
    QObject::connect(scan, &Operation::finished, &loop, [&loop] { loop.exit(Success); });
    QObject::connect(scan, &Operation::failed, &loop, [&loop](const Error& error) {
        loop.exit(fail(QStringLiteral("Discovery failed: ") + error.description(), Failure));
    });
    return loop.exec();
}

} // namespace tarnwick::cli
