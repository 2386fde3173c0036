#include "ui/JobPreviewView.h"

#include "app/AppModel.h"
#include "ui/ElidedLabel.h"
#include "ui/FileJobAnalyser.h"
#include "ui/JobFit.h"
#include "ui/JobPreviewTexts.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"
#include "ui/ToolpathView.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

using namespace std::chrono_literals;

// A file read faster than this shows its result without a flash of progress.
constexpr auto progressDelay = 300ms;
constexpr int shownWarnings = 6;

} // namespace

JobPreviewView::JobPreviewView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_toolpath(new ToolpathView(ToolpathView::Projection::Top, this))
    , m_side(new ToolpathView(ToolpathView::Projection::Side, this))
    , m_status(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_progressDelay(new QTimer(this))
    , m_details(new QWidget(this))
    , m_facts(new QFormLayout)
    , m_fit(new QLabel(this))
    , m_warnings(new QLabel(this)) {
    setObjectName(QStringLiteral("jobPreview"));
    m_toolpath->setObjectName(QStringLiteral("toolpath"));
    m_side->setObjectName(QStringLiteral("sideView"));
    m_status->setObjectName(QStringLiteral("previewStatus"));
    m_status->setWordWrap(true);
    style::makeSecondary(m_status);
    m_progress->setObjectName(QStringLiteral("previewProgress"));
    m_progress->setRange(0, 1000);
    m_progress->setTextVisible(false);
    m_progressDelay->setSingleShot(true);
    m_progressDelay->setInterval(progressDelay);
    connect(m_progressDelay, &QTimer::timeout, m_progress, &QWidget::show);
    m_fit->setObjectName(QStringLiteral("previewFit"));
    m_fit->setWordWrap(true);
    m_fit->setTextFormat(Qt::PlainText);
    style::setTextColor(m_fit, style::orange());
    m_warnings->setObjectName(QStringLiteral("previewWarnings"));
    m_warnings->setWordWrap(true);
    m_warnings->setTextFormat(Qt::PlainText);
    m_warnings->setTextInteractionFlags(Qt::TextSelectableByMouse);
    style::setTextColor(m_warnings, style::orange());

    m_facts->setContentsMargins(0, 0, 0, 0);
    m_facts->setHorizontalSpacing(12);
    m_facts->setVerticalSpacing(4);
    m_facts->setLabelAlignment(Qt::AlignLeft);
    auto* details = new QVBoxLayout(m_details);
    details->setContentsMargins(0, 0, 0, 0);
    details->setSpacing(10);
    details->addWidget(m_fit);
    details->addLayout(m_facts);
    details->addWidget(m_warnings);
    details->addStretch(1);

    auto* side = new QVBoxLayout;
    side->setSpacing(8);
    side->addWidget(m_status);
    side->addWidget(m_progress);
    side->addWidget(m_details, 1);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(16);
    // The front view under the view from above, as in a drawing, sharing its width.
    auto* views = new QVBoxLayout;
    views->setSpacing(8);
    views->addWidget(m_toolpath, 3);
    views->addWidget(m_side, 1);
    layout->addLayout(views, 3);
    layout->addLayout(side, 2);

    connect(&m_model, &AppModel::jobAnalysisChanged, this,
            [this] { follow(m_model.jobAnalysis()); });
    connect(&m_model, &AppModel::selectedMachineChanged, this, &JobPreviewView::showWarnings);
    connect(&m_model, &AppModel::machineLimitsChanged, this, &JobPreviewView::showWarnings);
    follow(m_model.jobAnalysis());
    keepTranslated(this, [this] {
        if (result())
            showFacts();
        else
            showStatus();
    });
}

JobAnalysisResult JobPreviewView::result() const {
    return m_analysis ? m_analysis->result().value<JobAnalysisResult>() : nullptr;
}

void JobPreviewView::follow(JobAnalysis* analysis) {
    m_analysis = analysis;
    m_failure.reset();
    m_toolpath->setPath({});
    m_side->setPath({});
    m_progress->hide();
    m_progress->setValue(0);
    m_progressDelay->stop();
    showStatus();
    if (!analysis)
        return;
    m_progressDelay->start();
    connect(analysis, &JobAnalysis::progress, this,
            [this](double fraction) { m_progress->setValue(int(fraction * 1000)); });
    connect(analysis, &Operation::finished, this, &JobPreviewView::showResult);
    connect(analysis, &Operation::failed, this, [this](const Error& error) {
        m_progressDelay->stop();
        m_progress->hide();
        m_failure = error;
        showStatus();
    });
}

void JobPreviewView::showStatus() {
    if (!m_analysis)
        m_status->setText(tr("Choose a job file to see what it will cut."));
    else if (m_failure)
        m_status->setText(tr("The file could not be read: %1").arg(m_failure->description()));
    else
        m_status->setText(tr("Reading the file\u2026"));
    m_status->show();
    m_details->hide();
}

void JobPreviewView::showResult() {
    m_progressDelay->stop();
    m_progress->hide();
    const JobAnalysisResult analysed = result();
    if (!analysed)
        return;
    showFacts();
    const gcode::JobSummary& summary = analysed->summary;
    PathDepths depths;
    if (summary.cutting)
        depths = {summary.cutting->max.z, summary.cutting->min.z,
                  summary.units == gcode::Units::Inches};
    m_toolpath->setPath(analysed->sketch, depths);
    m_side->setPath(analysed->side, depths);
    m_status->hide();
    m_details->show();
}

void JobPreviewView::showFacts() {
    while (m_facts->rowCount() > 0)
        m_facts->removeRow(0);
    for (const JobPreviewTexts::Row& row : JobPreviewTexts::rows(result()->summary)) {
        auto* label = new QLabel(row.label);
        style::makeSecondary(label);
        // A long row gives way to an ellipsis rather than widen the window.
        auto* value = new ElidedLabel;
        value->setFullText(row.value);
        value->setCopyable(true);
        value->setObjectName(QStringLiteral("previewFact"));
        m_facts->addRow(label, value);
    }
    showWarnings();
}

void JobPreviewView::showWarnings() {
    const JobAnalysisResult analysed = result();
    if (!analysed)
        return;
    const gcode::JobSummary& summary = analysed->summary;
    QStringList warnings = selectedJobFitProblems(m_model);
    m_fit->setText(doesNotFitLine(m_model, warnings));
    m_fit->setVisible(!warnings.isEmpty());
    if (summary.partial)
        warnings << JobPreviewTexts::partialNote();
    for (const gcode::Warning& warning :
         summary.warnings.first(std::min<qsizetype>(summary.warnings.size(), shownWarnings)))
        warnings << warning.description();
    if (summary.warnings.size() > shownWarnings)
        warnings << tr("Warnings not shown: %1.").arg(summary.warnings.size() - shownWarnings);
    m_warnings->setText(warnings.join(u'\n'));
    m_warnings->setVisible(!warnings.isEmpty());
}

} // namespace tarnwick::ui
