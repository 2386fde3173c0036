#include "ui/JobPreviewTexts.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace tarnwick::ui {

namespace {

using namespace tarnwick::gcode;

// A row lists this many tools at most, so that its text stays short whatever the file holds.
constexpr qsizetype listedTools = 24;

bool inInches(const JobSummary& summary) {
    return summary.units == Units::Inches;
}

const Warning* firstGap(const JobSummary& summary) {
    for (const Warning& warning : summary.warnings) {
        if (warning.makesPartial())
            return &warning;
    }
    return nullptr;
}

} // namespace

QList<JobPreviewTexts::Row> JobPreviewTexts::rows(const JobSummary& summary,
                                                  const QLocale& locale) {
    const bool inches = inInches(summary);
    const double scale = inches ? mmPerInch : 1;
    const int decimals = inches ? 3 : 1;
    const QString lengthUnit = inches ? tr("in") : tr("mm");
    const auto length = [&](double mm) { return locale.toString(mm / scale, 'f', decimals); };
    // Where part of the file was not read, finding nothing does not mean there is nothing.
    const QString none = summary.partial ? notKnown(summary) : tr("None");
    const auto size = [&](const std::optional<Extents>& extents) {
        if (!extents)
            return none;
        const Point3 box = extents->size();
        //: Width × depth × height of a box, then the unit of length.
        const QString inUnits =
            tr("%1 × %2 × %3 %4").arg(length(box.x), length(box.y), length(box.z), lengthUnit);
        if (!inches)
            return inUnits;
        const auto mm = [&](double value) { return locale.toString(value, 'f', 1); };
        //: A box in inches, then the same in millimetres.
        return tr("%1 (%2 × %3 × %4 mm)").arg(inUnits, mm(box.x), mm(box.y), mm(box.z));
    };
    const auto range = [&](const std::optional<Range>& value, double divisor, int places,
                           const QString& unit) {
        if (!value)
            return none;
        const QString low = locale.toString(value->min / divisor, 'f', places);
        const QString high = locale.toString(value->max / divisor, 'f', places);
        return low == high ? tr("%1 %2").arg(low, unit) : tr("%1 to %2 %3").arg(low, high, unit);
    };

    QString units;
    switch (summary.units) {
    case Units::Millimetres:
        units = tr("Millimetres");
        break;
    case Units::Inches:
        units = tr("Inches");
        break;
    case Units::Mixed:
        units = tr("Inches and millimetres");
        break;
    case Units::Unset:
        units = tr("Not set");
        break;
    }
    if (summary.usesAbsolute && summary.usesIncremental)
        units = tr("%1, absolute and incremental").arg(units);
    else if (summary.usesIncremental)
        units = tr("%1, incremental").arg(units);
    else if (summary.usesAbsolute)
        units = tr("%1, absolute").arg(units);

    QStringList tools;
    for (int tool : summary.tools.first(std::min(summary.tools.size(), listedTools)))
        tools << tr("T%1").arg(tool);
    QString toolsText = tools.isEmpty() ? none : tools.join(tr(", "));
    if (summary.tools.size() > listedTools)
        toolsText =
            tr("%1 and %n more", nullptr, int(summary.tools.size() - listedTools)).arg(toolsText);

    QString time = tr("about %1").arg(duration(summary.estimatedSeconds, locale));
    if (summary.partial)
        time = std::llround(summary.estimatedSeconds) > 0
                   ? tr("at least %1").arg(duration(summary.estimatedSeconds, locale))
                   : none;

    return {
        {tr("Cuts"), size(summary.cutting)},
        {tr("Rapid moves"), size(summary.rapid)},
        {tr("Units"), units},
        {tr("Tools"), toolsText},
        {tr("Spindle"), range(summary.spindle, 1, 0, tr("rpm"))},
        {tr("Feed"), range(summary.feed, scale, inches ? 1 : 0, tr("%1/min").arg(lengthUnit))},
        {tr("Time"), time},
        {tr("Moves"), locale.toString(summary.motions)},
        {tr("Lines"), locale.toString(summary.lines)},
    };
}

QString JobPreviewTexts::duration(double seconds, const QLocale& locale) {
    const qint64 whole = qint64(std::llround(seconds));
    if (whole < 60)
        return tr("%1 s").arg(locale.toString(whole));
    const qint64 minutes = (whole + 30) / 60;
    if (minutes < 60)
        return tr("%1 min").arg(locale.toString(minutes));
    return tr("%1 h %2 min").arg(locale.toString(minutes / 60), locale.toString(minutes % 60));
}

QString JobPreviewTexts::notKnown(const JobSummary& summary) {
    const Warning* gap = firstGap(summary);
    if (gap && gap->kind == Warning::Kind::Unsupported)
        return tr("Not known: line %1 uses %2").arg(gap->line).arg(gap->word);
    if (gap)
        return tr("Not known: line %1 could not be read").arg(gap->line);
    return tr("Not known: part of the file could not be read");
}

QString JobPreviewTexts::partialNote() {
    return tr("Part of the file was not understood, so this preview is partial.");
}

} // namespace tarnwick::ui
