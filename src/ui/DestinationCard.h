#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class ElidedLabel;
class EmptyState;
class StatusBadge;

// The selected machine with its status, or the prompt to choose one.
class DestinationCard : public QWidget {
    Q_OBJECT

public:
    explicit DestinationCard(AppModel& model, QWidget* parent = nullptr);

private:
    void showSelection();

    AppModel& m_model;
    QWidget* m_machinePage;
    EmptyState* m_emptyPage;
    ElidedLabel* m_name;
    ElidedLabel* m_subtitle;
    QLabel* m_busy;
    StatusBadge* m_badge;
    QPushButton* m_checkAgain;
};

} // namespace tarnwick::ui
