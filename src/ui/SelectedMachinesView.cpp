#include "ui/SelectedMachinesView.h"

#include "app/AppModel.h"
#include "ui/ElidedLabel.h"
#include "ui/Formatting.h"
#include "ui/StatusBadge.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tarnwick::ui {

SelectedMachinesView::SelectedMachinesView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("selectedMachines"));
    m_rows = new QVBoxLayout(this);
    m_rows->setContentsMargins(8, 8, 8, 8);
    m_rows->setSpacing(8);
    connect(&m_model, &AppModel::selectedMachinesChanged, this,
            &SelectedMachinesView::showMachines);
    connect(&m_model, &AppModel::machinesChanged, this, &SelectedMachinesView::showMachines);
    showMachines();
}

void SelectedMachinesView::showMachines() {
    const QList<Machine>& machines = m_model.selectedMachines();
    setVisible(machines.size() > 1);
    while (QLayoutItem* item = m_rows->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (machines.size() <= 1)
        return;
    for (const Machine& machine : machines) {
        auto* row = new QWidget(this);
        row->setObjectName(QStringLiteral("selectedMachineRow"));
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(12);
        auto* name = new ElidedLabel(row);
        name->setFullText(machine.name);
        name->setFont(style::font(style::TextStyle::Headline, row));
        auto* address = new ElidedLabel(row);
        address->setFullText(machineSubtitle(machine));
        style::makeSecondary(address);
        const bool busy = m_model.isAnnouncedBusy(machine.id());
        auto* badge = new StatusBadge(busy ? Machine::ConnectionStatus::Busy : machine.status, row);
        layout->addWidget(name, 1);
        layout->addWidget(address, 2);
        layout->addWidget(badge, 0, Qt::AlignVCenter);
        m_rows->addWidget(row);
    }
}

} // namespace tarnwick::ui
