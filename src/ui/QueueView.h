#pragma once

#include <QWidget>

class QLabel;
class QListView;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// Every file going to every machine: each pair with its progress or outcome and its own Cancel,
// Retry or Send Anyway, Cancel All, and once all have ended a summary.
class QueueView : public QWidget {
    Q_OBJECT

public:
    explicit QueueView(AppModel& model, QWidget* parent = nullptr);

    bool hasContent() const;

Q_SIGNALS:
    void hasContentChanged();

private:
    void actOnPair(int row);
    void showSummary();

    AppModel& m_model;
    QListView* m_list;
    QPushButton* m_cancelAll;
    QLabel* m_summary;
};

} // namespace tarnwick::ui
