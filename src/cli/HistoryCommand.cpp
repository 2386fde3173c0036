#include "cli/HistoryCommand.h"

#include "app/AppPersistence.h"
#include "app/SettingsStore.h"
#include "cli/Console.h"
#include "cli/MachineAddress.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>

namespace tarnwick::cli {

namespace {

std::optional<std::chrono::seconds> parseDuration(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^([0-9]{1,9})([smhdw])$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const qint64 count = match.captured(1).toLongLong();
    switch (match.captured(2).front().unicode()) {
    case u's':
        return std::chrono::seconds(count);
    case u'm':
        return std::chrono::minutes(count);
    case u'h':
        return std::chrono::hours(count);
    case u'd':
        return std::chrono::days(count);
    default:
        return std::chrono::weeks(count);
    }
}

// "192.168.1.20:2222" is that machine; "192.168.1.20" every port of that address.
std::optional<std::function<bool(const QString&)>> machineFilter(const QString& text) {
    const std::optional<Machine> machine = parseMachineAddress(text);
    if (!machine)
        return std::nullopt;
    if (text.contains(u':'))
        return [id = machine->id()](const QString& machineID) { return machineID == id; };
    return [prefix = QString(machine->ipAddress + u':')](const QString& machineID) {
        return machineID.startsWith(prefix);
    };
}

QString localPath(const UploadRecord& record) {
    QUrl url;
    url.setScheme(QStringLiteral("file"));
    url.setPath(record.filePath);
    return QDir::toNativeSeparators(url.toLocalFile());
}

QString isoTime(const UploadRecord& record) {
    return record.uploadedAt.toUTC().toString(Qt::ISODate);
}

QString csvField(QString text) {
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') &&
        !text.contains(u'\r'))
        return text;
    text.replace(u'"', QStringLiteral("\"\""));
    return u'"' + text + u'"';
}

} // namespace

HistoryCommand::HistoryCommand()
    : Command(QStringLiteral("history"), tr("Prints the upload history"),
              QStringLiteral("tarnwick-cli history [--json | --csv] [--machine ADDRESS] "
                             "[--since DURATION]"),
              tr("Prints the stored upload records, newest first: the time, the machine, the "
                 "size in bytes and the file's path, separated by tabs. Changes nothing.\n"
                 "Exit codes: 0 printed (also when there is nothing to print), 1 the history "
                 "could not be read, 2 bad usage."))
    , m_json(QStringLiteral("json"),
             tr("Print one JSON object per record, with the keys uploadedAt (ISO 8601), "
                "machine, file and size."))
    , m_csv(QStringLiteral("csv"),
            tr("Print comma-separated values with the header uploadedAt,machine,file,size."))
    , m_machine(QStringLiteral("machine"),
                tr("Only uploads to this machine: ADDRESS:PORT, or ADDRESS for every port."),
                QStringLiteral("ADDRESS"))
    , m_since(QStringLiteral("since"),
              tr("Only uploads in the last DURATION: a whole number followed by s, m, h, d or "
                 "w, such as 90m or 7d."),
              QStringLiteral("DURATION")) {
    parser().addOptions({m_json, m_csv, m_machine, m_since});
}

int HistoryCommand::run(const QCommandLineParser& parser) {
    if (!parser.positionalArguments().isEmpty())
        return usageError(tr("Usage: %1").arg(usage()));
    if (parser.isSet(m_json) && parser.isSet(m_csv))
        return usageError(tr("Choose either --json or --csv."));
    std::function<bool(const QString&)> machineMatches = [](const QString&) { return true; };
    if (parser.isSet(m_machine)) {
        const auto filter = machineFilter(parser.value(m_machine));
        if (!filter)
            return usageError(invalidAddressMessage());
        machineMatches = *filter;
    }
    QDateTime earliest;
    if (parser.isSet(m_since)) {
        const std::optional<std::chrono::seconds> window = parseDuration(parser.value(m_since));
        if (!window)
            return usageError(tr("--since takes a duration such as 90s, 45m, 12h, 7d or 2w."));
        earliest = QDateTime::currentDateTimeUtc().addSecs(-window->count());
    }

    std::unique_ptr<QSettings> store = openStandardStore();
    const QString location = store->fileName();
    const std::optional<QList<UploadRecord>> stored =
        AppPersistence(std::move(store)).readUploadRecords();
    if (!stored)
        return fail(tr("The upload history in %1 could not be read.")
                        .arg(QDir::toNativeSeparators(location)),
                    Failure);

    QList<UploadRecord> records;
    std::copy_if(stored->cbegin(), stored->cend(), std::back_inserter(records),
                 [&](const UploadRecord& record) {
                     return machineMatches(record.machineID) &&
                            (earliest.isNull() || record.uploadedAt >= earliest);
                 });
    // Processes that finished together may have stored their records out of order.
    std::stable_sort(records.begin(), records.end(),
                     [](const auto& a, const auto& b) { return a.uploadedAt > b.uploadedAt; });

    if (parser.isSet(m_csv))
        out() << "uploadedAt,machine,file,size\n";
    for (const UploadRecord& record : std::as_const(records)) {
        if (parser.isSet(m_json)) {
            printJsonLine({{QStringLiteral("uploadedAt"), isoTime(record)},
                           {QStringLiteral("machine"), record.machineID},
                           {QStringLiteral("file"), localPath(record)},
                           {QStringLiteral("size"), record.fileSize}});
        } else if (parser.isSet(m_csv)) {
            out() << isoTime(record) << ',' << csvField(record.machineID) << ','
                  << csvField(localPath(record)) << ',' << record.fileSize << '\n';
        } else {
            out() << record.uploadedAt.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                  << '\t' << record.machineID << '\t' << record.fileSize << '\t'
                  << localPath(record) << '\n';
        }
    }
    out().flush();
    return Success;
}

} // namespace tarnwick::cli
