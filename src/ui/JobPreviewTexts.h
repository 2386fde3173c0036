#pragma once

#include "gcode/JobSummary.h"

#include <QCoreApplication>
#include <QList>
#include <QLocale>

namespace tarnwick::ui {

// The preview's facts as the user reads them, lengths in the file's own units.
class JobPreviewTexts {
    Q_DECLARE_TR_FUNCTIONS(tarnwick::ui::JobPreviewTexts)

public:
    struct Row {
        QString label;
        QString value;

        friend bool operator==(const Row&, const Row&) = default;
    };

    static QList<Row> rows(const gcode::JobSummary& summary, const QLocale& locale = {});
    // Hours and minutes, or seconds under a minute: the estimate is no finer than that.
    static QString duration(double seconds, const QLocale& locale = {});
    static QString partialNote();
    // What stands for a fact of a partial analysis that found nothing: the first part it could
    // not read.
    static QString notKnown(const gcode::JobSummary& summary);
};

} // namespace tarnwick::ui
