#include "ui/QueueListModel.h"

#include "app/DisplayName.h"
#include "app/TransferTexts.h"
#include "app/UploadQueue.h"

namespace tarnwick::ui {

QueueListModel::QueueListModel(UploadQueue& queue, QObject* parent)
    : QAbstractListModel(parent)
    , m_queue(queue) {
    connect(&m_queue, &UploadQueue::pairsReset, this, [this] {
        beginResetModel();
        endResetModel();
    });
    connect(&m_queue, &UploadQueue::pairChanged, this,
            [this](qsizetype row) { Q_EMIT dataChanged(index(int(row)), index(int(row))); });
}

int QueueListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_queue.pairs().size());
}

QVariant QueueListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QueuedUpload& pair = m_queue.pairs().at(index.row());
    const QString title = tr("%1 → %2", "a file going to a machine")
                              .arg(pair.file.fileName(), displayName(pair.machine.name));
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return title;
    case Qt::AccessibleTextRole:
        return tr("%1: %2").arg(title, detail(pair));
    case DetailRole:
        return detail(pair);
    case FractionRole:
        if (pair.state == QueuedUpload::State::Checking)
            return pair.checkedFraction;
        if (pair.state == QueuedUpload::State::Sending && pair.progress)
            return pair.progress->fraction();
        return pair.isSent() ? 1.0 : -1.0;
    case FailedRole:
        return pair.state == QueuedUpload::State::Failed;
    case ActionRole:
        return action(pair).text;
    case ActionNameRole:
        return action(pair).accessibleName;
    default:
        return {};
    }
}

QueueListModel::Action QueueListModel::action(const QueuedUpload& pair) const {
    const QString file = pair.file.fileName();
    const QString machine = displayName(pair.machine.name);
    if (!pair.hasEnded())
        return {tr("Cancel"), tr("Cancel the upload of %1 to %2").arg(file, machine)};
    if (pair.state == QueuedUpload::State::DuplicateRefused)
        return {tr("Send Anyway"), tr("Send %1 to %2 anyway").arg(file, machine)};
    if (pair.canRetry())
        return {tr("Retry"), tr("Retry the upload of %1 to %2").arg(file, machine)};
    return {};
}

QString QueueListModel::detail(const QueuedUpload& pair) const {
    if (pair.state != QueuedUpload::State::Sending || !pair.progress)
        return pair.stateText();
    const TransferProgress& progress = *pair.progress;
    QStringList parts{
        tr("%1 of %2").arg(byteCount(progress.bytesSent), byteCount(progress.totalBytes))};
    if (const auto rate = rateText(progress.bytesPerSecond))
        parts << *rate;
    if (const auto left = timeLeftText(progress))
        parts << *left;
    return parts.join(QStringLiteral(" · "));
}

} // namespace tarnwick::ui
