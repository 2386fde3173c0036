#pragma once

#include <QStringList>

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// Why the selected file's job cannot run on the selected machine; empty when it can, when the
// machine has no limits or while the file is still being read.
QStringList selectedJobFitProblems(const AppModel& model);

// The one line that says the job does not fit, naming the machine and the first reason.
QString doesNotFitLine(const AppModel& model, const QStringList& problems);

} // namespace tarnwick::ui
