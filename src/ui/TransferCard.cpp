#include "ui/TransferCard.h"

#include "app/AppModel.h"
#include "ui/Formatting.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

constexpr int barSteps = 10'000;

} // namespace

TransferCard::TransferCard(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("transferCard"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(10);

    auto* titleRow = new QHBoxLayout;
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("transferTitle"));
    m_title->setFont(style::font(style::TextStyle::Headline, this));
    m_percent = new QLabel(this);
    m_percent->setObjectName(QStringLiteral("transferPercent"));
    m_percent->setFont(style::font(style::TextStyle::Body, this));
    titleRow->addWidget(m_title);
    titleRow->addStretch();
    titleRow->addWidget(m_percent);
    layout->addLayout(titleRow);

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
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cancelUploadButton"));
    style::setTextColor(m_cancel, style::statusColor(Machine::ConnectionStatus::Unavailable));
    QPalette cancelPalette = m_cancel->palette();
    cancelPalette.setColor(QPalette::ButtonText,
                           style::statusColor(Machine::ConnectionStatus::Unavailable));
    m_cancel->setPalette(cancelPalette);
    connect(m_cancel, &QPushButton::clicked, &m_model, &AppModel::cancelUpload);
    detailRow->addWidget(m_cancel);
    layout->addLayout(detailRow);

    connect(&m_model, &AppModel::progressChanged, this, &TransferCard::showProgress);
    connect(&m_model, &AppModel::isUploadingChanged, this, &TransferCard::showProgress);
    showProgress();
}

void TransferCard::showProgress() {
    const auto& progress = m_model.progress();
    if (!progress)
        return;
    const bool completed = progress->phase == TransferProgress::Phase::Completed;
    m_title->setText(phaseTitle(progress->phase));
    m_percent->setText(percentText(progress->fraction()));
    m_bar->setValue(int(progress->fraction() * barSteps));
    QPalette barPalette = palette();
    barPalette.setColor(QPalette::Highlight, completed ? style::green() : style::accent(this));
    m_bar->setPalette(barPalette);

    m_bytes->setText(byteCount(progress->bytesSent) + QStringLiteral(" of ") +
                     byteCount(progress->totalBytes));
    const auto rate = rateText(progress->bytesPerSecond);
    m_rate->setText(rate.value_or(QString()));
    m_rate->setVisible(rate.has_value());
    const auto timeLeft = m_model.isUploading() ? timeLeftText(*progress) : std::nullopt;
    m_timeLeft->setText(timeLeft.value_or(QString()));
    m_timeLeft->setVisible(timeLeft.has_value());
    m_cancel->setVisible(m_model.isUploading());
}

} // namespace tarnwick::ui
