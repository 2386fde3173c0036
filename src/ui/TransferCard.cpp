#include "ui/TransferCard.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "app/TransferTexts.h"
#include "ui/ElidedLabel.h"
#include "ui/Formatting.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

constexpr int barSteps = 10'000;

QColor failureColor(const QWidget*) {
    return style::statusColor(Machine::ConnectionStatus::Unavailable);
}

} // namespace

TransferCard::TransferCard(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("transferCard"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(10);

    auto* titleRow = new QHBoxLayout;
    titleRow->setSpacing(6);
    m_failureIcon =
        new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 16, failureColor, this);
    m_failureIcon->setObjectName(QStringLiteral("transferFailureIcon"));
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("transferTitle"));
    m_title->setFont(style::font(style::TextStyle::Headline, this));
    m_percent = new QLabel(this);
    m_percent->setObjectName(QStringLiteral("transferPercent"));
    m_percent->setFont(style::font(style::TextStyle::Body, this));
    titleRow->addWidget(m_failureIcon);
    titleRow->addWidget(m_title);
    titleRow->addStretch();
    titleRow->addWidget(m_percent);
    layout->addLayout(titleRow);

    m_subject = new ElidedLabel(this);
    m_subject->setObjectName(QStringLiteral("transferSubject"));
    style::makeSecondary(m_subject);
    layout->addWidget(m_subject);

    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("transferBar"));
    m_bar->setRange(0, barSteps);
    m_bar->setTextVisible(false);
    m_bar->setFixedHeight(8);
    layout->addWidget(m_bar);

    auto* detailRow = new QHBoxLayout;
    detailRow->setSpacing(12);
    const QFont callout = style::font(style::TextStyle::Callout, this);
    m_bytes = new QLabel(this);
    m_bytes->setObjectName(QStringLiteral("transferBytes"));
    m_rate = new QLabel(this);
    m_rate->setObjectName(QStringLiteral("transferRate"));
    m_timeLeft = new QLabel(this);
    m_timeLeft->setObjectName(QStringLiteral("transferTimeLeft"));
    for (QLabel* label : {m_bytes, m_rate, m_timeLeft}) {
        label->setFont(callout);
        style::makeSecondary(label);
    }
    detailRow->addWidget(m_bytes);
    detailRow->addStretch();
    detailRow->addWidget(m_timeLeft);
    detailRow->addWidget(m_rate);
    m_cancel = new QPushButton(this);
    m_cancel->setObjectName(QStringLiteral("cancelUploadButton"));
    style::setTextColor(m_cancel, failureColor(this));
    QPalette cancelPalette = m_cancel->palette();
    cancelPalette.setColor(QPalette::ButtonText, failureColor(this));
    m_cancel->setPalette(cancelPalette);
    connect(m_cancel, &QPushButton::clicked, &m_model, &AppModel::cancelUpload);
    detailRow->addWidget(m_cancel);
    layout->addLayout(detailRow);

    m_failureText = new QLabel(this);
    m_failureText->setObjectName(QStringLiteral("transferFailure"));
    m_failureText->setWordWrap(true);
    m_failureText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    style::setTextColor(m_failureText, failureColor(this));
    layout->addWidget(m_failureText);

    connect(&m_model, &AppModel::progressChanged, this, &TransferCard::showProgress);
    connect(&m_model, &AppModel::checkingFractionChanged, this, &TransferCard::showProgress);
    connect(&m_model, &AppModel::isUploadingChanged, this, &TransferCard::followUpload);
    connect(&m_model, &AppModel::uploadEnded, this, &TransferCard::showEnding);
    keepTranslated(this, [this] {
        m_bar->setAccessibleName(tr("Transfer progress"));
        m_cancel->setText(tr("Cancel"));
        m_cancel->setAccessibleName(tr("Cancel upload"));
        showProgress();
    });
}

bool TransferCard::hasContent() const {
    return m_model.progress() || m_model.checkingFraction() || m_failure;
}

void TransferCard::followUpload() {
    if (m_model.isUploading()) {
        // The cards above may change during the upload; this one keeps naming what is sent.
        m_failure.reset();
        m_fileName = m_model.selectedFile() ? m_model.selectedFile()->fileName() : QString();
        m_machineName =
            m_model.selectedMachine() ? displayName(m_model.selectedMachine()->name) : QString();
    }
    showProgress();
}

void TransferCard::showEnding(const UploadOutcome& outcome) {
    // A cancel shows as the cancelled progress value, not as a failure.
    const bool failed = outcome.kind == UploadOutcome::Kind::Failed &&
                        !outcome.error->is<CancellationError>() &&
                        !outcome.error->isUploadError(UploadError::Kind::Cancelled);
    if (failed)
        m_failure = outcome.error;
    showProgress();
}

void TransferCard::showProgress() {
    const auto& progress = m_model.progress();
    const auto checking = m_model.checkingFraction();
    const bool failed = m_failure.has_value() && !m_model.isUploading();
    const bool completed = progress && progress->phase == TransferProgress::Phase::Completed;

    m_failureIcon->setVisible(failed);
    m_failureText->setVisible(failed);
    m_failureText->setText(m_failure ? m_failure->description() : QString());
    if (!m_fileName.isEmpty()) {
        if (m_model.isUploading())
            m_subject->setFullText(
                tr("Sending \u201C%1\u201D to %2").arg(m_fileName, m_machineName));
        else if (completed)
            m_subject->setFullText(tr("Sent \u201C%1\u201D to %2").arg(m_fileName, m_machineName));
        else
            m_subject->setFullText(tr("\u201C%1\u201D to %2").arg(m_fileName, m_machineName));
    }
    m_subject->setVisible(!m_fileName.isEmpty());

    if (checking && m_model.isUploading()) {
        showChecking(*checking);
    } else if (progress) {
        m_title->setText(failed ? tr("Upload failed") : phaseTitle(progress->phase));
        m_percent->setText(percentText(progress->fraction()));
        m_bar->setValue(int(progress->fraction() * barSteps));
        m_bytes->setText(
            tr("%1 of %2").arg(byteCount(progress->bytesSent), byteCount(progress->totalBytes)));
        const auto rate = failed ? std::nullopt : rateText(progress->bytesPerSecond);
        m_rate->setText(rate.value_or(QString()));
        m_rate->setVisible(rate.has_value());
        const auto timeLeft = m_model.isUploading() ? timeLeftText(*progress) : std::nullopt;
        m_timeLeft->setText(timeLeft.value_or(QString()));
        m_timeLeft->setVisible(timeLeft.has_value());
    } else {
        m_title->setText(failed ? tr("Upload failed") : QString());
    }
    const bool measured = progress.has_value() && !(checking && m_model.isUploading());
    m_percent->setVisible(measured);
    m_bytes->setVisible(measured);
    m_bar->setVisible(measured || (checking && m_model.isUploading()));
    if (!measured) {
        m_rate->hide();
        m_timeLeft->hide();
    }
    QPalette barPalette = palette();
    barPalette.setColor(QPalette::Highlight, completed ? style::green() : style::accent(this));
    m_bar->setPalette(barPalette);
    m_cancel->setVisible(m_model.isUploading());
    Q_EMIT hasContentChanged();
}

void TransferCard::showChecking(double fraction) {
    m_title->setText(tr("Checking the file\u2026 %1").arg(percentText(fraction)));
    m_bar->setValue(int(fraction * barSteps));
}

} // namespace tarnwick::ui
