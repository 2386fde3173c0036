#pragma once

#include <QWidget>

class QLabel;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

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
    QWidget* m_emptyPage;
    QLabel* m_name;
    QLabel* m_subtitle;
    StatusBadge* m_badge;
};

} // namespace tarnwick::ui
