#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The sidebar: the machines on the local network, the scan button and the manual entry.
class MachineSidebar : public QWidget {
    Q_OBJECT

public:
    explicit MachineSidebar(AppModel& model, QWidget* parent = nullptr);

private:
    QWidget* makeTitleRow();
    QWidget* makeManualEntry();

    void showMachines();
    void showSelection();
    void takeListSelection();
    void showScanState();
    void setShowingManualEntry(bool showing);
    void updateAddButton();
    void addManualMachine();

    AppModel& m_model;
    bool m_scanned = false;
    QToolButton* m_scanButton = nullptr;
    QStackedWidget* m_listArea = nullptr;
    QListWidget* m_list = nullptr;
    QLabel* m_emptyHint = nullptr;
    QPushButton* m_enterButton = nullptr;
    QWidget* m_entryFields = nullptr;
    QLineEdit* m_addressField = nullptr;
    QLineEdit* m_portField = nullptr;
    QPushButton* m_addButton = nullptr;
};

} // namespace tarnwick::ui
