#include "cli/InspectCommand.h"

#include "app/JobFile.h"
#include "app/SettingsStore.h"
#include "cli/Console.h"
#include "cli/LimitsOption.h"
#include "cli/MachineAddress.h"
#include "gcode/FileAnalysis.h"
#include "gcode/MachineFit.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

#include <cmath>
#include <variant>

namespace tarnwick::cli {

namespace {

using namespace tarnwick::gcode;

// A tenth of a micrometre is finer than any machine moves, and spares scripts binary noise.
double rounded(double value) {
    return std::round(value * 1e4) / 1e4;
}

QJsonValue unitsJson(Units units) {
    switch (units) {
    case Units::Millimetres:
        return QStringLiteral("mm");
    case Units::Inches:
        return QStringLiteral("inch");
    case Units::Mixed:
        return QStringLiteral("mixed");
    case Units::Unset:
        break;
    }
    return QJsonValue::Null;
}

QJsonValue extentsJson(const std::optional<Extents>& extents) {
    if (!extents)
        return QJsonValue::Null;
    const auto point = [](const Point3& p) {
        return QJsonArray{rounded(p.x), rounded(p.y), rounded(p.z)};
    };
    return QJsonObject{{QStringLiteral("min"), point(extents->min)},
                       {QStringLiteral("max"), point(extents->max)}};
}

QJsonValue rangeJson(const std::optional<Range>& range) {
    if (!range)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("min"), rounded(range->min)},
                       {QStringLiteral("max"), rounded(range->max)}};
}

QJsonObject toJson(const JobSummary& summary) {
    QJsonArray tools;
    for (int tool : summary.tools)
        tools.append(tool);
    QJsonArray warnings;
    for (const Warning& warning : summary.warnings)
        warnings.append(warning.description());
    return {
        {QStringLiteral("lines"), summary.lines},
        {QStringLiteral("motions"), summary.motions},
        {QStringLiteral("units"), unitsJson(summary.units)},
        {QStringLiteral("cutting"), extentsJson(summary.cutting)},
        {QStringLiteral("rapid"), extentsJson(summary.rapid)},
        {QStringLiteral("tools"), tools},
        {QStringLiteral("spindle"), rangeJson(summary.spindle)},
        {QStringLiteral("feed"), rangeJson(summary.feed)},
        {QStringLiteral("estimatedSeconds"), std::round(summary.estimatedSeconds * 10) / 10},
        {QStringLiteral("warnings"), warnings},
        {QStringLiteral("partial"), summary.partial},
    };
}

QString extentsText(const std::optional<Extents>& extents) {
    if (!extents)
        return InspectCommand::tr("none");
    const QLocale locale;
    const auto number = [&locale](double value) { return locale.toString(value, 'f', 3); };
    const Point3 size = extents->size();
    return InspectCommand::tr("%1 × %2 × %3 mm (X %4 to %5, Y %6 to %7, Z %8 to %9)")
        .arg(number(size.x), number(size.y), number(size.z), number(extents->min.x),
             number(extents->max.x), number(extents->min.y), number(extents->max.y),
             number(extents->min.z), number(extents->max.z));
}

QJsonObject fitJson(const QStringList& problems) {
    return {{QStringLiteral("ok"), problems.isEmpty()},
            {QStringLiteral("reasons"), QJsonArray::fromStringList(problems)}};
}

void printFit(const QStringList& problems) {
    if (problems.isEmpty())
        out() << InspectCommand::tr("Fits: the job fits the machine's limits.") << '\n';
    for (const QString& problem : problems)
        out() << InspectCommand::tr("Does not fit: %1").arg(problem) << '\n';
    out().flush();
}

void printText(const QString& path, const JobSummary& summary) {
    const QLocale locale;
    static const char* const unitNames[] = {
        QT_TRANSLATE_NOOP("InspectCommand", "not set"), QT_TRANSLATE_NOOP("InspectCommand", "mm"),
        QT_TRANSLATE_NOOP("InspectCommand", "inch"), QT_TRANSLATE_NOOP("InspectCommand", "mixed")};
    QStringList tools;
    for (int tool : summary.tools)
        tools << QStringLiteral("T%1").arg(tool);
    const auto range = [&locale](const std::optional<Range>& value, const char* withUnit) {
        return value ? InspectCommand::tr(withUnit).arg(locale.toString(value->min),
                                                        locale.toString(value->max))
                     : InspectCommand::tr("none");
    };
    out() << path << '\n'
          << InspectCommand::tr("Lines: %1, moves: %2, units: %3")
                 .arg(locale.toString(summary.lines), locale.toString(summary.motions),
                      InspectCommand::tr(unitNames[int(summary.units)]))
          << '\n'
          << InspectCommand::tr("Cutting: %1").arg(extentsText(summary.cutting)) << '\n'
          << InspectCommand::tr("Rapid: %1").arg(extentsText(summary.rapid)) << '\n'
          << InspectCommand::tr("Tools: %1")
                 .arg(tools.isEmpty() ? InspectCommand::tr("none")
                                      : tools.join(QStringLiteral(", ")))
          << '\n'
          << InspectCommand::tr("Spindle: %1")
                 .arg(range(summary.spindle, QT_TRANSLATE_NOOP("InspectCommand", "%1 to %2 rpm")))
          << '\n'
          << InspectCommand::tr("Feed: %1")
                 .arg(range(summary.feed, QT_TRANSLATE_NOOP("InspectCommand", "%1 to %2 mm/min")))
          << '\n'
          << InspectCommand::tr("Time: about %1 min")
                 .arg(locale.toString(summary.estimatedSeconds / 60, 'f', 1))
          << '\n';
    for (const Warning& warning : summary.warnings)
        out() << InspectCommand::tr("Warning: %1").arg(warning.description()) << '\n';
    out().flush();
}

} // namespace

InspectCommand::InspectCommand()
    : Command(QStringLiteral("inspect"),
              tr("Shows what a job file will do: moves, extents, tools, time"),
              QStringLiteral("tarnwick-cli inspect FILE [--json] "
                             "[--limits X,Y,Z[,RPM[,TOOLS[,FEED]]] | --machine ADDRESS[:PORT]]"),
              tr("Reads a job file and prints what it will do: its moves, units, extents (in mm), "
                 "tools, spindle speeds, feeds, an estimated time and warnings. Nothing is "
                 "sent.\n\nWith --limits or --machine it also says whether the job fits the "
                 "machine: whether the cuts span more than it travels on an axis, use a tool "
                 "above its tool changer's positions, or a spindle speed or feed above its "
                 "highest.\n\nExit codes:\n"
                 "  0  the file was read (warnings do not change this)\n"
                 "  2  bad usage or an unusable file"))
    , m_json(QStringLiteral("json"), tr("Prints one JSON object instead of text."))
    , m_limits(QStringLiteral("limits"),
               tr("Checks the job against these limits: the travel in X, Y and Z in mm, then "
                  "optionally the highest spindle speed in rpm, the number of tool positions "
                  "and the highest feed in mm/min, separated by commas (an optional one may be "
                  "left empty)."),
               QStringLiteral("X,Y,Z[,RPM[,TOOLS[,FEED]]]"))
    , m_machine(QStringLiteral("machine"),
                tr("Checks the job against the limits entered in the app for the machine at "
                   "this address (the port is 2222 when left out). Names are not looked up."),
                QStringLiteral("ADDRESS[:PORT]")) {
    parser().addOption(m_json);
    parser().addOption(m_limits);
    parser().addOption(m_machine);
    parser().addPositionalArgument(QStringLiteral("FILE"), tr("The job file."));
}

int InspectCommand::run(const QCommandLineParser& parser) {
    if (parser.positionalArguments().size() != 1)
        return usageError(tr("Usage: %1").arg(usage()));

    std::optional<MachineLimits> limits;
    if (parser.isSet(m_limits) && parser.isSet(m_machine))
        return usageError(tr("Give either --limits or --machine, not both."));
    if (parser.isSet(m_limits)) {
        const auto parsed = parseLimitsOption(parser.value(m_limits));
        if (const auto* message = std::get_if<QString>(&parsed))
            return usageError(*message);
        limits = std::get<MachineLimits>(parsed);
    } else if (parser.isSet(m_machine)) {
        const std::optional<Machine> machine = parseMachineAddress(parser.value(m_machine));
        if (!machine)
            return usageError(invalidAddressMessage());
        limits = limitsFromJson(settings::machineLimits(*openStandardStore(), machine->id()));
        if (!limits)
            return usageError(tr("No limits are stored for %1. Enter them in the app under "
                                 "“Machine limits…”, or give --limits.")
                                  .arg(machine->id()));
    }

    const QString path = parser.positionalArguments()[0];
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(path));
    if (!file)
        return fail(file.error().description(), Usage);
    const std::atomic_bool never{false};
    const FileAnalysisOutcome outcome = analyseFile(path, never);
    if (!outcome.analysis)
        return fail(outcome.readError, Usage);
    const JobSummary& summary = outcome.analysis->summary;
    const std::optional<QStringList> problems = fitProblems(summary, limits);
    if (parser.isSet(m_json)) {
        QJsonObject json = toJson(summary);
        if (problems)
            json.insert(QStringLiteral("fits"), fitJson(*problems));
        printJsonLine(json);
    } else {
        printText(path, summary);
        if (problems)
            printFit(*problems);
    }
    return Success;
}

} // namespace tarnwick::cli
