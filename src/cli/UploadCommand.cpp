#include "app/AppPersistence.h"
#include "app/JobFile.h"
#include "app/SettingsStore.h"
#include "cli/CommandHelp.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/InterruptNotifier.h"
#include "cli/MachineAddress.h"
#include "cli/ProgressBar.h"
#include "transfer/MakeraFileUploader.h"
#include "transfer/UploadLog.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QJsonObject>
#include <QLoggingCategory>

namespace tarnwick::cli {

namespace {

const QString usage =
    QStringLiteral("tarnwick-cli upload FILE --to ADDRESS[:PORT] [--again] [--json]");

const QString duplicateMessage =
    QStringLiteral("This exact file was uploaded to this machine in the last 24 hours.");

// Prints a failure the way the chosen output expects and returns its exit code.
int report(const QString& message, ExitCode code, bool json) {
    if (json)
        printJsonLine({{QStringLiteral("error"), message}});
    return fail(message, code);
}

QJsonObject toJson(const TransferProgress& progress) {
    return {
        {QStringLiteral("phase"), rawValue(progress.phase)},
        {QStringLiteral("bytesSent"), progress.bytesSent},
        {QStringLiteral("totalBytes"), progress.totalBytes},
        {QStringLiteral("bytesPerSecond"), progress.bytesPerSecond},
    };
}

} // namespace

int runUpload(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Sends one job file (.nc, .cnc or .gcode) into the machine's folder /sd/gcodes/. "
        "The job is not started.\n"
        "Ctrl-C cancels the upload and tells the machine.\n\n"
        "Exit codes:\n"
        "  0  the machine took the whole file; the upload is added to the upload history\n"
        "  1  the upload failed or was cancelled, or the file went to this machine in the "
        "last 24 hours (see --again)\n"
        "  2  bad usage, an unusable file or an invalid address"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    parser.addOption(help);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The job file to send."));
    const QCommandLineOption to(
        QStringLiteral("to"),
        QStringLiteral("The machine's IPv4 address, with the controller's port (2222 when left "
                       "out)."),
        QStringLiteral("ADDRESS[:PORT]"));
    const QCommandLineOption again(
        QStringLiteral("again"),
        QStringLiteral("Send the file even if it went to this machine in the last 24 hours."));
    const QCommandLineOption json(
        QStringLiteral("json"),
        QStringLiteral("Print one JSON object per progress value, {\"phase\", \"bytesSent\", "
                       "\"totalBytes\", \"bytesPerSecond\"}, and on failure a last line "
                       "{\"error\": DESCRIPTION}."));
    parser.addOptions({to, again, json});

    if (!parser.parse(arguments))
        return fail(parser.errorText(), Usage);
    if (parser.isSet(help)) {
        out() << commandHelp(parser, usage);
        out().flush();
        return Success;
    }
    const bool jsonOutput = parser.isSet(json);
    if (parser.positionalArguments().size() != 1 || !parser.isSet(to))
        return fail(QStringLiteral("Usage: ") + usage, Usage);

    const QString path = QFileInfo(parser.positionalArguments().first()).absoluteFilePath();
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(path));
    if (!file)
        return report(file.error().description(), Usage, jsonOutput);
    const std::optional<Machine> machine = parseMachineAddress(parser.value(to));
    if (!machine)
        return report(invalidAddressMessage, Usage, jsonOutput);

    AppPersistence persistence(openStandardStore());
    if (!parser.isSet(again) &&
        isRecentDuplicate(persistence.uploadRecords(), machine->id(), file->id(), file->size,
                          QDateTime::currentDateTimeUtc()))
        return report(duplicateMessage +
                          QStringLiteral(" Run the command again with --again to send it anyway."),
                      Failure, jsonOutput);

    // The uploader's log is for diagnosis (QT_LOGGING_RULES turns it on); the user reads the
    // outcome below.
    QLoggingCategory::setFilterRules(QLatin1String(uploadLog().categoryName()) +
                                     QStringLiteral("=false"));
    MakeraFileUploader uploader;
    std::optional<ProgressBar> bar;
    if (!jsonOutput && isTerminal(stdout))
        bar.emplace(out());
    int exitCode = Failure;

    QObject::connect(&uploader, &FileUploading::progress, &uploader,
                     [&](const TransferProgress& progress) {
                         if (jsonOutput)
                             printJsonLine(toJson(progress));
                         else if (bar)
                             bar->show(progress);
                     });
    QObject::connect(&uploader, &Operation::finished, &uploader, [&] {
        persistence.recordUpload(
            {machine->id(), file->id(), file->size, QDateTime::currentDateTimeUtc()});
        if (bar)
            bar->finish();
        if (!jsonOutput) {
            out() << "Uploaded " << file->fileName() << " to " << machine->id() << ":/sd/gcodes/"
                  << file->fileName() << ".\n";
            out().flush();
        }
        exitCode = Success;
        QCoreApplication::quit();
    });
    QObject::connect(&uploader, &Operation::failed, &uploader, [&](const Error& error) {
        if (bar)
            bar->finish();
        report(error.description(), Failure, jsonOutput);
        exitCode = Failure;
        QCoreApplication::quit();
    });

    InterruptNotifier interrupt;
    QObject::connect(&interrupt, &InterruptNotifier::interrupted, &uploader,
                     &MakeraFileUploader::cancel);

    uploader.upload(file.value(), *machine);
    QCoreApplication::exec();
    return exitCode;
}

} // namespace tarnwick::cli
