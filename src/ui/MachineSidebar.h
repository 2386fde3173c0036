#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class MachineListModel;

// The sidebar: the machines on the local network, the scan button and the manual entry.
class MachineSidebar : public QWidget {
    Q_OBJECT

public:
    explicit MachineSidebar(AppModel& model, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeTitleRow();
    QWidget* makeManualEntry();

    void showSelection();
    void takeListSelection();
    void checkAgainOnClick(const QModelIndex& index);
    void showListLimit();
    void showScanState();
    void setShowingManualEntry(bool showing);
    void updateAddButton();
    void addManualMachine();

    AppModel& m_model;
    bool m_scanned = false;
    bool m_showingSelection = false;
    // The selected machine when a click began: a click on it checks it again.
    QString m_selectedBeforePress;
    MachineListModel* m_machines = nullptr;
    QToolButton* m_scanButton = nullptr;
    QStackedWidget* m_listArea = nullptr;
    QListView* m_list = nullptr;
    QLabel* m_emptyHint = nullptr;
    QLabel* m_limitNote = nullptr;
    QPushButton* m_enterButton = nullptr;
    QWidget* m_entryFields = nullptr;
    QLineEdit* m_addressField = nullptr;
    QLineEdit* m_portField = nullptr;
    QPushButton* m_addButton = nullptr;
};

} // namespace tarnwick::ui
