#include "ui/SelectedMachinesView.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "ui/ElidedLabel.h"
#include "ui/Formatting.h"
#include "ui/Retranslation.h"
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
    QStringList ids;
    for (const Machine& machine : machines)
        ids << machine.id();
    if (machines.size() <= 1)
        ids.clear();
    if (ids != m_shownIDs) {
        m_shownIDs = ids;
        makeRows();
    }
    for (qsizetype i = 0; i < m_badges.size(); ++i) {
        const Machine& machine = machines.at(i);
        m_badges[i]->setStatus(m_model.isAnnouncedBusy(machine.id())
                                   ? Machine::ConnectionStatus::Busy
                                   : machine.status);
    }
}

void SelectedMachinesView::makeRows() {
    while (QLayoutItem* item = m_rows->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_badges.clear();
    if (m_shownIDs.isEmpty())
        return;
    for (const Machine& machine : m_model.selectedMachines()) {
        auto* row = new QWidget(this);
        row->setObjectName(QStringLiteral("selectedMachineRow"));
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(12);
        auto* name = new ElidedLabel(row);
        name->setFullText(displayName(machine.name));
        name->setFont(style::font(style::TextStyle::Headline, row));
        auto* address = new ElidedLabel(row);
        keepTranslated(address,
                       [address, machine] { address->setFullText(machineSubtitle(machine)); });
        style::makeSecondary(address);
        auto* badge = new StatusBadge(machine.status, row);
        m_badges.append(badge);
        layout->addWidget(name, 1);
        layout->addWidget(address, 2);
        layout->addWidget(badge, 0, Qt::AlignVCenter);
        m_rows->addWidget(row);
    }
}

} // namespace tarnwick::ui
