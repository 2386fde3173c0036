#include "ui/JobPreviewTexts.h"

#include <QStringList>

#include <cmath>

namespace tarnwick::ui {

namespace {

using namespace tarnwick::gcode;

bool inInches(const JobSummary& summary) {
    return summary.units == Units::Inches;
}

} // namespace

QList<JobPreviewTexts::Row> JobPreviewTexts::rows(const JobSummary& summary,
                                                  const QLocale& locale) {
    const bool inches = inInches(summary);
    const double scale = inches ? mmPerInch : 1;
    const int decimals = inches ? 3 : 1;
    const QString lengthUnit = inches ? tr("in") : tr("mm");
    const auto length = [&](double mm) { return locale.toString(mm / scale, 'f', decimals); };
    const auto size = [&](const std::optional<Extents>& extents) {
        if (!extents)
            return tr("None");
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
            return tr("None");
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
    for (int tool : summary.tools)
        tools << tr("T%1").arg(tool);

    return {
        {tr("Cuts"), size(summary.cutting)},
        {tr("Rapid moves"), size(summary.rapid)},
        {tr("Units"), units},
        {tr("Tools"), tools.isEmpty() ? tr("None") : tools.join(tr(", "))},
        {tr("Spindle"), range(summary.spindle, 1, 0, tr("rpm"))},
        {tr("Feed"), range(summary.feed, scale, inches ? 1 : 0, tr("%1/min").arg(lengthUnit))},
        {tr("Time"), tr("about %1").arg(duration(summary.estimatedSeconds, locale))},
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

QString JobPreviewTexts::partialNote() {
    return tr("Part of the file was not understood, so this preview is partial.");
}

} // namespace tarnwick::ui
