#include "ui/QueueView.h"

#include "app/AppModel.h"
#include "ui/QueueListModel.h"
#include "ui/QueueRowDelegate.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

// Enough rows to see the machines side by side; more scroll.
constexpr int visibleRows = 6;

} // namespace

QueueView::QueueView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("queueView"));
    UploadQueue& queue = m_model.uploadQueue();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(10);

    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("queueList"));
    m_list->setModel(new QueueListModel(queue, m_list));
    m_list->setItemDelegate(new QueueRowDelegate(m_list));
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setUniformItemSizes(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    style::tintSelection(m_list);
    layout->addWidget(m_list);

    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("queueSummary"));
    m_summary->setWordWrap(true);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(m_summary);

    auto* buttons = new QHBoxLayout;
    m_cancel = new QPushButton(this);
    m_cancel->setObjectName(QStringLiteral("cancelPairButton"));
    m_retry = new QPushButton(this);
    m_retry->setObjectName(QStringLiteral("retryPairButton"));
    m_cancelAll = new QPushButton(this);
    m_cancelAll->setObjectName(QStringLiteral("cancelAllButton"));
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_retry);
    buttons->addStretch(1);
    buttons->addWidget(m_cancelAll);
    layout->addLayout(buttons);

    connect(m_cancel, &QPushButton::clicked, this, [this, &queue] { queue.cancel(currentRow()); });
    connect(m_retry, &QPushButton::clicked, this, [this, &queue] { queue.retry(currentRow()); });
    connect(m_cancelAll, &QPushButton::clicked, &queue, &UploadQueue::cancelAll);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QueueView::showButtons);
    connect(&queue, &UploadQueue::pairChanged, this, &QueueView::showButtons);
    connect(&queue, &UploadQueue::runningChanged, this, &QueueView::showSummary);
    connect(&queue, &UploadQueue::pairsReset, this, [this] {
        const int rowHeight = m_list->sizeHintForRow(0);
        const int rows =
            int(std::min<qsizetype>(m_model.uploadQueue().pairs().size(), visibleRows));
        m_list->setFixedHeight(rows * std::max(rowHeight, 1) + 2 * m_list->frameWidth());
        m_list->setCurrentIndex(m_list->model()->index(0, 0));
        showButtons();
        showSummary();
        Q_EMIT hasContentChanged();
    });
    keepTranslated(this, [this] {
        m_list->setAccessibleName(tr("Uploads"));
        m_cancel->setText(tr("Cancel"));
        m_cancel->setAccessibleName(tr("Cancel the chosen upload"));
        m_retry->setText(tr("Retry"));
        m_retry->setAccessibleName(tr("Retry the chosen upload"));
        m_cancelAll->setText(tr("Cancel All"));
        showSummary();
    });
}

bool QueueView::hasContent() const {
    return !m_model.uploadQueue().pairs().isEmpty();
}

qsizetype QueueView::currentRow() const {
    return m_list->currentIndex().isValid() ? m_list->currentIndex().row() : -1;
}

void QueueView::showButtons() {
    const QList<QueuedUpload>& pairs = m_model.uploadQueue().pairs();
    const qsizetype row = currentRow();
    const bool chosen = row >= 0 && row < pairs.size();
    m_cancel->setEnabled(chosen && !pairs.at(row).hasEnded());
    m_retry->setEnabled(chosen && pairs.at(row).canRetry());
    m_cancelAll->setEnabled(m_model.uploadQueue().isRunning());
}

void QueueView::showSummary() {
    const UploadQueue& queue = m_model.uploadQueue();
    const bool ended = !queue.pairs().isEmpty() && !queue.isRunning();
    m_summary->setText(ended ? queue.summary() : QString());
    m_summary->setVisible(ended);
    showButtons();
}

} // namespace tarnwick::ui
