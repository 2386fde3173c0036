#pragma once

#include "app/Errors.h"
#include "ui/FileJobAnalyser.h"

#include <QPointer>
#include <QWidget>

#include <optional>

class QFormLayout;
class QLabel;
class QProgressBar;
class QTimer;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class ToolpathView;

// What the selected job file will do: its toolpath from above and from the front beside its
// extents, units, tools, time and warnings. It follows the model's analysis of the selected file.
class JobPreviewView : public QWidget {
    Q_OBJECT

public:
    explicit JobPreviewView(AppModel& model, QWidget* parent = nullptr);

private:
    // The followed analysis' result; none while it runs, after it failed or without one.
    JobAnalysisResult result() const;
    void follow(JobAnalysis* analysis);
    // What the preview says while it has no result to show.
    void showStatus();
    void showResult();
    void showFacts();
    // The analysis' warnings, after every reason why the job does not fit the selected machine.
    void showWarnings();

    AppModel& m_model;
    QPointer<JobAnalysis> m_analysis;
    std::optional<Error> m_failure;
    ToolpathView* m_toolpath;
    ToolpathView* m_side;
    QLabel* m_status;
    QProgressBar* m_progress;
    QTimer* m_progressDelay;
    QWidget* m_details;
    QFormLayout* m_facts;
    QLabel* m_fit;
    QLabel* m_warnings;
};

} // namespace tarnwick::ui
