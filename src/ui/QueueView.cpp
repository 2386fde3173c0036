#include "ui/QueueView.h"

#include "app/AppModel.h"
#include "ui/QueueListModel.h"
#include "ui/QueueRowDelegate.h"
#include "ui/Retranslation.h"
#include "ui/RowButtons.h"
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

    m_list = new RowButtonListView(this);
    m_list->setObjectName(QStringLiteral("queueList"));
    m_list->setModel(new QueueListModel(queue, m_list));
    m_list->setItemDelegate(new QueueRowDelegate(m_list));
    // Each row acts through its own button: choosing a row would do nothing.
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
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
    m_cancelAll = new QPushButton(this);
    m_cancelAll->setObjectName(QStringLiteral("cancelAllButton"));
    buttons->addStretch(1);
    buttons->addWidget(m_cancelAll);
    layout->addLayout(buttons);

    auto* rowButtons =
        new RowButtons(m_list, QueueListModel::ActionRole, QueueListModel::ActionNameRole);
    connect(rowButtons, &RowButtons::clicked, this, &QueueView::actOnPair);
    connect(m_cancelAll, &QPushButton::clicked, &queue, &UploadQueue::cancelAll);
    connect(&queue, &UploadQueue::runningChanged, this, &QueueView::showSummary);
    connect(&queue, &UploadQueue::pairsReset, this, [this] {
        const int rowHeight = m_list->sizeHintForRow(0);
        const int rows =
            int(std::min<qsizetype>(m_model.uploadQueue().pairs().size(), visibleRows));
        m_list->setFixedHeight(rows * std::max(rowHeight, 1) + 2 * m_list->frameWidth());
        showSummary();
        Q_EMIT hasContentChanged();
    });
    keepTranslated(this, [this] {
        m_list->setAccessibleName(tr("Uploads"));
        m_cancelAll->setText(tr("Cancel All"));
        showSummary();
    });
}

bool QueueView::hasContent() const {
    return !m_model.uploadQueue().pairs().isEmpty();
}

void QueueView::actOnPair(int row) {
    UploadQueue& queue = m_model.uploadQueue();
    if (row < 0 || row >= queue.pairs().size())
        return;
    if (queue.pairs().at(row).hasEnded())
        queue.retry(row);
    else
        queue.cancel(row);
}

void QueueView::showSummary() {
    const UploadQueue& queue = m_model.uploadQueue();
    const bool ended = !queue.pairs().isEmpty() && !queue.isRunning();
    m_summary->setText(ended ? queue.summary() : QString());
    m_summary->setVisible(ended);
    m_cancelAll->setEnabled(queue.isRunning());
}

} // namespace tarnwick::ui
