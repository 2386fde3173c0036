#pragma once

#include <QWidget>

class QVBoxLayout;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The machines selected together, one line each: name, address and status. A handful of rows
// that the user picked, so it is drawn again whenever the selection or a status changes.
class SelectedMachinesView : public QWidget {
    Q_OBJECT

public:
    explicit SelectedMachinesView(AppModel& model, QWidget* parent = nullptr);

private:
    void showMachines();

    AppModel& m_model;
    QVBoxLayout* m_rows;
};

} // namespace tarnwick::ui
