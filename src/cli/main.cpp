#include "BuildConfig.h"
#include "app/SettingsStore.h"
#include "cli/Commands.h"
#include "cli/Console.h"

#include <QCoreApplication>

#include <array>

using namespace tarnwick;
using namespace tarnwick::cli;

namespace {

const std::array commands{
    Command{"scan", "Lists the machines that announce themselves on the local network", runScan},
    Command{"check", "Checks that a machine accepts a connection", runCheck},
    Command{"upload", "Sends a job file to a machine without starting it", runUpload},
    Command{"inspect", "Shows what a job file will do: moves, extents, tools, time", runInspect},
    Command{"check-update", "Asks the update feed whether a newer version exists", runCheckUpdate},
};

void printUsage(QTextStream& stream) {
    stream << "Usage: tarnwick-cli COMMAND [OPTIONS]\n\n"
              "Sends job files to Makera CNC machines on the local network. It never starts a "
              "job.\n\nCommands:\n";
    for (const Command& command : commands)
        stream << "  " << QString::fromLatin1(command.name).leftJustified(14) << command.summary
               << '\n';
    stream << "\nRun 'tarnwick-cli COMMAND --help' for a command's options.\n"
              "Exit codes: 0 success, 1 failure, 2 bad usage or input.\n";
    stream.flush();
}

} // namespace

int main(int argc, char* argv[]) {
    // Qt's own event loop answers each request sooner than GLib's (about a tenth of the upload
    // rate on loopback), and nothing here needs GLib.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    setApplicationIdentity();

    QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || arguments[1] == QLatin1String("--help") ||
        arguments[1] == QLatin1String("-h") || arguments[1] == QLatin1String("help")) {
        printUsage(arguments.size() < 2 ? err() : out());
        return arguments.size() < 2 ? Usage : Success;
    }
    if (arguments[1] == QLatin1String("--version")) {
        out() << "tarnwick-cli " << build::version << '\n';
        return Success;
    }

    const QString name = arguments[1];
    for (const Command& command : commands) {
        if (name == QLatin1String(command.name)) {
            arguments[0] = QStringLiteral("tarnwick-cli ") + name;
            arguments.removeAt(1);
            return command.run(arguments);
        }
    }
    err() << "tarnwick-cli: unknown command '" << name << "'\n\n";
    printUsage(err());
    return Usage;
}
