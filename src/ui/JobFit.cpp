#include "ui/JobFit.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "gcode/MachineFit.h"
#include "ui/FileJobAnalyser.h"

#include <QCoreApplication>

namespace tarnwick::ui {

QStringList selectedJobFitProblems(const AppModel& model) {
    const JobAnalysis* analysis = model.jobAnalysis();
    const auto result = analysis ? analysis->result().value<JobAnalysisResult>() : nullptr;
    if (!result)
        return {};
    return gcode::fitProblems(result->summary, gcode::limitsFromJson(model.selectedMachineLimits()))
        .value_or(QStringList());
}

QString doesNotFitLine(const AppModel& model, const QStringList& problems) {
    if (problems.isEmpty() || !model.selectedMachine())
        return {};
    //: The name of the machine, then the first reason why the job does not fit it.
    return QCoreApplication::translate("tarnwick::ui::JobFit", "This job does not fit %1. %2")
        .arg(displayName(model.selectedMachine()->name), problems.first());
}

} // namespace tarnwick::ui
