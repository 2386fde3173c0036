#include "cli/LimitsOption.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <cmath>

namespace tarnwick::cli {

namespace {

std::optional<double> positive(const QString& field) {
    bool ok = false;
    const double value = QLocale::c().toDouble(field, &ok);
    return ok && value > 0 && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::variant<gcode::MachineLimits, QString> parseLimitsOption(const QString& text) {
    const QStringList fields = text.split(u',');
    if (fields.size() < 3 || fields.size() > 6)
        return QCoreApplication::translate("LimitsOption",
                                           "--limits takes 3 to 6 values separated by commas: "
                                           "X,Y,Z[,RPM[,TOOLS[,FEED]]].");
    gcode::MachineLimits limits;
    double* const travel[] = {&limits.travel.x, &limits.travel.y, &limits.travel.z};
    for (int axis = 0; axis < 3; ++axis) {
        const std::optional<double> value = positive(fields[axis]);
        if (!value)
            return QCoreApplication::translate("LimitsOption",
                                               "--limits: the travel in %1 must be a number of "
                                               "millimetres greater than 0, not “%2”.")
                .arg(QChar(u'X' + axis), fields[axis]);
        *travel[axis] = *value;
    }
    const QString rpm = fields.value(3);
    if (!rpm.isEmpty() && !(limits.highestSpindleRpm = positive(rpm)))
        return QCoreApplication::translate("LimitsOption",
                                           "--limits: the highest spindle speed must be a number "
                                           "of rpm greater than 0, not “%1”.")
            .arg(rpm);
    const QString tools = fields.value(4);
    if (!tools.isEmpty()) {
        bool ok = false;
        const int positions = QLocale::c().toInt(tools, &ok);
        if (!ok || positions < 1)
            return QCoreApplication::translate("LimitsOption",
                                               "--limits: the number of tool positions must be a "
                                               "whole number of at least 1, not “%1”.")
                .arg(tools);
        limits.toolPositions = positions;
    }
    const QString feed = fields.value(5);
    if (!feed.isEmpty() && !(limits.highestFeed = positive(feed)))
        return QCoreApplication::translate("LimitsOption",
                                           "--limits: the highest feed must be a number of mm/min "
                                           "greater than 0, not “%1”.")
            .arg(feed);
    return limits;
}

} // namespace tarnwick::cli
