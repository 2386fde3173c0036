#include "cli/InspectCommand.h"

#include "app/JobFile.h"
#include "cli/Console.h"
#include "gcode/FileAnalysis.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

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
              QStringLiteral("tarnwick-cli inspect FILE [--json]"),
              tr("Reads a job file and prints what it will do: its moves, units, extents (in mm), "
                 "tools, spindle speeds, feeds, an estimated time and warnings. Nothing is "
                 "sent.\n\nExit codes:\n"
                 "  0  the file was read (warnings do not change this)\n"
                 "  2  bad usage or an unusable file"))
    , m_json(QStringLiteral("json"), tr("Prints one JSON object instead of text.")) {
    parser().addOption(m_json);
    parser().addPositionalArgument(QStringLiteral("FILE"), tr("The job file."));
}

int InspectCommand::run(const QCommandLineParser& parser) {
    if (parser.positionalArguments().size() != 1)
        return usageError(tr("Usage: %1").arg(usage()));

    const QString path = parser.positionalArguments()[0];
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(path));
    if (!file)
        return fail(file.error().description(), Usage);
    const std::atomic_bool never{false};
    const FileAnalysisOutcome outcome = analyseFile(path, never);
    if (!outcome.analysis)
        return fail(outcome.readError, Usage);
    if (parser.isSet(m_json)) {
        printJsonLine(toJson(outcome.analysis->summary));
    } else {
        printText(path, outcome.analysis->summary);
    }
    return Success;
}

} // namespace tarnwick::cli
