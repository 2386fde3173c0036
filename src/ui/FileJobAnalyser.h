#pragma once

#include "app/Services.h"
#include "gcode/FileAnalysis.h"

#include <QMetaType>

#include <memory>

namespace tarnwick::ui {

// What JobAnalysis::result() holds once the analysis has finished.
using JobAnalysisResult = std::shared_ptr<const gcode::Analysis>;

// Reads job files with the G-code analyser on a worker thread.
class FileJobAnalyser : public JobAnalysing {
public:
    JobAnalysis* analyse(const JobFile& file, QObject* parent) override;
};

} // namespace tarnwick::ui

Q_DECLARE_METATYPE(tarnwick::ui::JobAnalysisResult)
