#pragma once

#include <QAbstractListModel>

namespace tarnwick {
class UploadQueue;
struct QueuedUpload;
} // namespace tarnwick

namespace tarnwick::ui {

// The queue's pairs as a list, one row per file and machine, following the queue's own rows.
class QueueListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        // "part.nc → Bench Mill".
        TitleRole = Qt::UserRole + 1,
        // What became of the pair, or how far it got: state, sizes, rate and time left.
        DetailRole,
        // 0 to 1, or -1 when there is no measure to show.
        FractionRole,
        // The pair ended without being sent.
        FailedRole,
        // What the row's own button does: "Cancel", "Retry", "Send Anyway", or empty for none.
        ActionRole,
        // The same for a screen reader, naming the file and the machine.
        ActionNameRole,
    };

    explicit QueueListModel(UploadQueue& queue, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QString detail(const QueuedUpload& pair) const;
    // What the row's button does, in a word and in a sentence; empty when it has none.
    struct Action {
        QString text;
        QString accessibleName;
    };
    Action action(const QueuedUpload& pair) const;

    UploadQueue& m_queue;
};

} // namespace tarnwick::ui
