#pragma once

#include "app/Machine.h"

#include <QWidget>

namespace tarnwick::ui {

// One machine in the sidebar: status dot, name, address, and "Busy" when it is busy.
class MachineRow : public QWidget {
    Q_OBJECT

public:
    explicit MachineRow(const Machine& machine, QWidget* parent = nullptr);

    const Machine& machine() const { return m_machine; }

private:
    Machine m_machine;
};

} // namespace tarnwick::ui
