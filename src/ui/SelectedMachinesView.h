#pragma once

#include <QStringList>
#include <QWidget>

class QVBoxLayout;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class StatusBadge;

// The machines selected together, one line each: name, address and status. The rows are made
// again only when the machines change; a status changes its badge in place.
class SelectedMachinesView : public QWidget {
    Q_OBJECT

public:
    explicit SelectedMachinesView(AppModel& model, QWidget* parent = nullptr);

private:
    void showMachines();

    void makeRows();

    AppModel& m_model;
    QVBoxLayout* m_rows;
    // The machines the rows show, by id, and each row's badge.
    QStringList m_shownIDs;
    QList<StatusBadge*> m_badges;
};

} // namespace tarnwick::ui
