#pragma once

#include "app/Machine.h"

#include <QAbstractListModel>
#include <QHash>

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The model's machines as a list for the sidebar. It forwards the model's row changes (a row
// inserted, a row changed) rather than rebuilding, so that a scan that hears hundreds of
// machines costs the window little for each one.
class MachineListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        // The address as the row shows it: with the port when it is not the usual one, or when
        // another listed machine has the same address.
        AddressRole = Qt::UserRole + 1,
        // The status the dot shows. For the selected machine it is the destination's, so that
        // the dot and the destination's badge never disagree.
        StatusRole,
        // Whether the machine's own announcement says it is busy.
        BusyRole,
        IdRole,
    };

    explicit MachineListModel(AppModel& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const Machine& machine(int row) const;
    // The row of the machine with this id, or -1.
    int row(const QString& machineID) const;

private:
    void insertRow(int row);
    void changeRow(int row);
    void reset();
    void followSelection();
    void countAddress(const QString& address, int change);
    QString shownAddress(const Machine& machine) const;

    AppModel& m_model;
    // The rows the views were told of; the model's list has as many between its signals.
    int m_rowCount = 0;
    QHash<QString, int> m_addressCounts;
    QString m_selectedID;
};

} // namespace tarnwick::ui
