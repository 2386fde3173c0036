#include "ui/MachineListModel.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "ui/Formatting.h"
#include "ui/ManualEntryRules.h"

namespace tarnwick::ui {

MachineListModel::MachineListModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , m_model(model) {
    connect(&m_model, &AppModel::machineInserted, this, &MachineListModel::insertRow);
    connect(&m_model, &AppModel::machineChanged, this, &MachineListModel::changeRow);
    connect(&m_model, &AppModel::machinesReset, this, &MachineListModel::reset);
    connect(&m_model, &AppModel::selectedMachineChanged, this, &MachineListModel::followSelection);
    reset();
    followSelection();
}

int MachineListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rowCount;
}

const Machine& MachineListModel::machine(int row) const {
    return m_model.machines().at(row);
}

QVariant MachineListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Machine& machine = this->machine(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return displayName(machine.name);
    case Qt::ToolTipRole:
        return tr("%1 at %2").arg(displayName(machine.name), machineAddress(machine));
    case Qt::AccessibleTextRole:
        //: A machine in the sidebar as assistive technology reads it: name, address, status.
        return tr("%1, %2, %3")
            .arg(displayName(machine.name), shownAddress(machine), statusWord(machine.status));
    case AddressRole:
        return shownAddress(machine);
    case StatusRole: {
        const auto& selected = m_model.selectedMachine();
        return int(selected && selected->id() == machine.id() ? selected->status : machine.status);
    }
    case BusyRole:
        return machine.status == Machine::ConnectionStatus::Busy;
    case IdRole:
        return machine.id();
    default:
        return {};
    }
}

int MachineListModel::row(const QString& machineID) const {
    const QList<Machine>& machines = m_model.machines();
    for (int i = 0; i < m_rowCount; ++i)
        if (machines[i].id() == machineID)
            return i;
    return -1;
}

void MachineListModel::followSelection() {
    const auto& selected = m_model.selectedMachine();
    const QString selectedID = selected ? selected->id() : QString();
    for (const QString& id : {m_selectedID, selectedID})
        if (const int at = row(id); at >= 0)
            Q_EMIT dataChanged(index(at), index(at), {StatusRole});
    m_selectedID = selectedID;
}

void MachineListModel::insertRow(int row) {
    // A view may answer the insertion by changing the machines again.
    const QString address = machine(row).ipAddress;
    beginInsertRows({}, row, row);
    ++m_rowCount;
    endInsertRows();
    countAddress(address, +1);
}

void MachineListModel::changeRow(int row) {
    Q_EMIT dataChanged(index(row), index(row));
}

void MachineListModel::reset() {
    beginResetModel();
    m_rowCount = int(m_model.machines().size());
    m_addressCounts.clear();
    for (const Machine& machine : m_model.machines())
        ++m_addressCounts[machine.ipAddress];
    endResetModel();
}

void MachineListModel::countAddress(const QString& address, int change) {
    int& count = m_addressCounts[address];
    const bool sharedBefore = count > 1;
    count += change;
    const bool sharedAfter = count > 1;
    if (count <= 0)
        m_addressCounts.remove(address);
    // Rows of another machine at this address now show or hide their port.
    if (sharedBefore != sharedAfter && m_rowCount > 0)
        Q_EMIT dataChanged(index(0), index(m_rowCount - 1), {AddressRole});
}

QString MachineListModel::shownAddress(const Machine& machine) const {
    const bool shared = m_addressCounts.value(machine.ipAddress) > 1;
    return machine.port != defaultControllerPort || shared ? machineAddress(machine)
                                                           : machine.ipAddress;
}

} // namespace tarnwick::ui
