#include "ui/MachineListModel.h"

#include "app/AppModel.h"
#include "ui/Formatting.h"
#include "ui/ManualEntryRules.h"

namespace tarnwick::ui {

namespace {

bool sameMachine(const Machine& a, const Machine& b) {
    return a.port == b.port && a.ipAddress == b.ipAddress;
}

} // namespace

MachineListModel::MachineListModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , m_model(model) {
    connect(&m_model, &AppModel::machinesChanged, this, &MachineListModel::follow);
    connect(&m_model, &AppModel::selectedMachineChanged, this, &MachineListModel::followSelection);
    follow();
    followSelection();
}

int MachineListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant MachineListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Machine& machine = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return machine.name;
    case Qt::ToolTipRole:
        return tr("%1 at %2").arg(machine.name, machineAddress(machine));
    case Qt::AccessibleTextRole:
        //: A machine in the sidebar as assistive technology reads it: name, address, status.
        return tr("%1, %2, %3")
            .arg(machine.name, shownAddress(machine), statusWord(machine.status));
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
    for (int i = 0; i < m_rows.size(); ++i)
        if (m_rows[i].id() == machineID)
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

void MachineListModel::follow() {
    // A view may answer a change by changing the machines again; that change waits until this
    // one is complete, and is then followed from the rows as they are.
    if (m_following) {
        m_followAgain = true;
        return;
    }
    m_following = true;
    do {
        m_followAgain = false;
        followOnce(m_model.machines());
    } while (m_followAgain);
    m_following = false;
}

void MachineListModel::followOnce(QList<Machine> next) {
    if (next.size() == m_rows.size() + 1 && followInsertion(next))
        return;
    if (next.size() == m_rows.size()) {
        changeRows(next);
        return;
    }
    beginResetModel();
    m_rows = next;
    m_addressCounts.clear();
    for (const Machine& machine : std::as_const(m_rows))
        ++m_addressCounts[machine.ipAddress];
    endResetModel();
}

bool MachineListModel::followInsertion(const QList<Machine>& next) {
    int at = 0;
    while (at < m_rows.size() && sameMachine(m_rows[at], next[at]))
        ++at;
    for (int i = at; i < m_rows.size(); ++i)
        if (!sameMachine(m_rows[i], next[i + 1]))
            return false;
    beginInsertRows({}, at, at);
    m_rows.insert(at, next[at]);
    endInsertRows();
    countAddress(next[at].ipAddress, +1);
    changeRows(next);
    return true;
}

void MachineListModel::changeRows(const QList<Machine>& next) {
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i] == next[i])
            continue;
        countAddress(m_rows[i].ipAddress, -1);
        m_rows[i] = next[i];
        countAddress(m_rows[i].ipAddress, +1);
        Q_EMIT dataChanged(index(i), index(i));
    }
}

void MachineListModel::countAddress(const QString& address, int change) {
    int& count = m_addressCounts[address];
    const bool sharedBefore = count > 1;
    count += change;
    const bool sharedAfter = count > 1;
    if (count <= 0)
        m_addressCounts.remove(address);
    // Rows of another machine at this address now show or hide their port.
    if (sharedBefore != sharedAfter && !m_rows.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_rows.size()) - 1), {AddressRole});
}

QString MachineListModel::shownAddress(const Machine& machine) const {
    const bool shared = m_addressCounts.value(machine.ipAddress) > 1;
    return machine.port != defaultControllerPort || shared ? machineAddress(machine)
                                                        : machine.ipAddress;
}

} // namespace tarnwick::ui
