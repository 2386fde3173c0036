#include "BuildConfig.h"
#include "app/SettingsStore.h"
#include "cli/CheckCommand.h"
#include "cli/CheckUpdateCommand.h"
#include "cli/Console.h"
#include "cli/HistoryCommand.h"
#include "cli/InspectCommand.h"
#include "cli/ScanCommand.h"
#include "cli/UploadCommand.h"
#include "cli/WatchCommand.h"
#include "i18n/Translations.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

using namespace tarnwick;
using namespace tarnwick::cli;

namespace {

std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<ScanCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<UploadCommand>());
    commands.push_back(std::make_unique<WatchCommand>());
    commands.push_back(std::make_unique<HistoryCommand>());
    commands.push_back(std::make_unique<InspectCommand>());
    commands.push_back(std::make_unique<CheckUpdateCommand>());
    return commands;
}

void printUsage(QTextStream& stream, const std::vector<std::unique_ptr<Command>>& commands) {
    stream << QCoreApplication::translate(
        "cli", "Usage: tarnwick-cli COMMAND [OPTIONS]\n\n"
               "Sends job files to Makera CNC machines on the local network. It never "
               "starts a job.\n\nCommands:\n");
    for (const auto& command : commands)
        stream << "  " << command->name().leftJustified(14) << command->summary() << '\n';
    stream << QCoreApplication::translate(
        "cli", "\nRun 'tarnwick-cli COMMAND --help' for a command's options and exit codes.\n"
               "Exit codes: 0 success, 1 failure, 2 bad usage or input; upload has more.\n");
    stream.flush();
}

} // namespace

int main(int argc, char* argv[]) {
    // Qt's own event loop answers each request sooner than GLib's (about a tenth of the upload
    // rate on loopback), and nothing here needs GLib.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    setApplicationIdentity();
    i18n::useLanguage();
    prepareConsole();

    const std::vector<std::unique_ptr<Command>> commands = allCommands();
    QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || arguments[1] == QLatin1String("--help") ||
        arguments[1] == QLatin1String("-h") || arguments[1] == QLatin1String("help")) {
        printUsage(arguments.size() < 2 ? err() : out(), commands);
        return arguments.size() < 2 ? Usage : Success;
    }
    if (arguments[1] == QLatin1String("--version")) {
        out() << "tarnwick-cli " << build::version << '\n';
        return Success;
    }

    const QString name = arguments.takeAt(1);
    for (const auto& command : commands) {
        if (name == command->name())
            return command->execute(arguments);
    }
    err() << QCoreApplication::translate("cli", "tarnwick-cli: unknown command '%1'").arg(name)
          << "\n\n";
    printUsage(err(), commands);
    return Usage;
}
