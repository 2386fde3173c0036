#include "ui/MachineSidebar.h"

#include "app/AppModel.h"
#include "ui/Icons.h"
#include "ui/MachineListModel.h"
#include "ui/MachineRowDelegate.h"
#include "ui/ManualEntryRules.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick::ui {

MachineSidebar::MachineSidebar(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("machineSidebar"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    layout->addWidget(makeTitleRow());

    m_machines = new MachineListModel(m_model, this);
    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("machineList"));
    m_list->setModel(m_machines);
    m_list->setItemDelegate(new MachineRowDelegate(m_list));
    m_list->setUniformItemSizes(true);
    // Ctrl/Cmd-click, Shift-click, Shift+arrows and Ctrl+Space choose several destinations.
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->viewport()->installEventFilter(this);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    style::tintSelection(m_list);
    m_emptyHint = new QLabel(this);
    m_emptyHint->setObjectName(QStringLiteral("noMachinesHint"));
    m_emptyHint->setWordWrap(true);
    m_emptyHint->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_emptyHint->setContentsMargins(18, 8, 18, 8);
    m_emptyHint->setFont(style::font(style::TextStyle::Callout, this));
    style::makeSecondary(m_emptyHint);
    m_listArea = new QStackedWidget(this);
    m_listArea->addWidget(m_list);
    m_listArea->addWidget(m_emptyHint);
    layout->addWidget(m_listArea, 1);

    m_limitNote = new QLabel(this);
    m_limitNote->setObjectName(QStringLiteral("listLimitNote"));
    m_limitNote->setWordWrap(true);
    m_limitNote->setContentsMargins(18, 6, 18, 6);
    m_limitNote->setFont(style::font(style::TextStyle::Caption, this));
    style::setTextColor(m_limitNote, style::orange());
    layout->addWidget(m_limitNote);

    layout->addWidget(makeManualEntry());

    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MachineSidebar::takeListSelection);
    connect(m_list, &QListView::clicked, this, &MachineSidebar::checkAgainOnClick);
    // The list model follows the machines first (it connected first); the selection then.
    connect(&m_model, &AppModel::machinesChanged, this, &MachineSidebar::showSelection);
    connect(&m_model, &AppModel::machinesChanged, this, &MachineSidebar::showScanState);
    connect(&m_model, &AppModel::selectedMachineChanged, this, &MachineSidebar::showSelection);
    connect(&m_model, &AppModel::selectedMachinesChanged, this, &MachineSidebar::showSelection);
    connect(&m_model, &AppModel::isDiscoveringChanged, this, &MachineSidebar::showScanState);
    connect(&m_model, &AppModel::isMachineListFullChanged, this, &MachineSidebar::showListLimit);
    showSelection();
    showScanState();
    showListLimit();
    keepTranslated(this, [this] {
        m_list->setAccessibleName(tr("Machines"));
        m_emptyHint->setText(
            tr("No machine answered the scan.\n\n"
               "This usually means that the system does not allow Tarnwick to use the local "
               "network, that a firewall blocks UDP port 3333, or that the machine is on another "
               "subnet or reached through a VPN.\n\n"
               "Use “Enter IP address” below to add the machine by its address."));
        m_limitNote->setText(tr("Stopped listing more: the scan heard more than %n machines.",
                                nullptr, AppModel::maximumListedMachines));
    });
}

QWidget* MachineSidebar::makeTitleRow() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(18, 18, 18, 18);

    auto* titles = new QVBoxLayout;
    titles->setSpacing(1);
    auto* title = new QLabel(row);
    title->setObjectName(QStringLiteral("sidebarTitle"));
    title->setFont(style::font(style::TextStyle::Title2, row));
    auto* caption = new QLabel(row);
    caption->setFont(style::font(style::TextStyle::Caption, row));
    style::makeSecondary(caption);
    titles->addWidget(title);
    titles->addWidget(caption);
    layout->addLayout(titles);
    layout->addStretch();

    m_scanButton = new QToolButton(row);
    m_scanButton->setObjectName(QStringLiteral("scanButton"));
    m_scanButton->setAutoRaise(true);
    m_scanButton->setIconSize(QSize(18, 18));
    connect(m_scanButton, &QToolButton::clicked, &m_model, &AppModel::discover);
    layout->addWidget(m_scanButton, 0, Qt::AlignVCenter);
    keepTranslated(row, [this, title, caption] {
        title->setText(tr("Machines"));
        caption->setText(tr("Local network"));
        m_scanButton->setToolTip(tr("Scan for Makera machines"));
        m_scanButton->setAccessibleName(tr("Scan for Makera machines"));
    });
    return row;
}

QWidget* MachineSidebar::makeManualEntry() {
    auto* area = new QWidget(this);
    area->setObjectName(QStringLiteral("manualEntry"));
    area->setAutoFillBackground(true);
    area->setBackgroundRole(QPalette::Button);
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);

    m_enterButton = new QPushButton(icons::icon(QStringLiteral("plus")), QString(), area);
    m_enterButton->setObjectName(QStringLiteral("enterAddressButton"));
    connect(m_enterButton, &QPushButton::clicked, this, [this] { setShowingManualEntry(true); });
    layout->addWidget(m_enterButton);

    m_entryFields = new QWidget(area);
    auto* fields = new QVBoxLayout(m_entryFields);
    fields->setContentsMargins(0, 0, 0, 0);
    fields->setSpacing(10);
    m_addressField = new QLineEdit(m_entryFields);
    m_addressField->setObjectName(QStringLiteral("addressField"));
    m_addressField->setClearButtonEnabled(true);
    fields->addWidget(m_addressField);

    auto* lastLine = new QHBoxLayout;
    m_portField = new QLineEdit(QString::number(defaultControllerPort), m_entryFields);
    m_portField->setObjectName(QStringLiteral("portField"));
    m_portField->setFixedWidth(80);
    lastLine->addWidget(m_portField);
    lastLine->addStretch();
    auto* cancel = new QPushButton(m_entryFields);
    cancel->setObjectName(QStringLiteral("cancelEntryButton"));
    connect(cancel, &QPushButton::clicked, this, [this] { setShowingManualEntry(false); });
    lastLine->addWidget(cancel);
    m_addButton = new QPushButton(m_entryFields);
    m_addButton->setObjectName(QStringLiteral("addButton"));
    style::makeProminent(m_addButton);
    connect(m_addButton, &QPushButton::clicked, this, &MachineSidebar::addManualMachine);
    lastLine->addWidget(m_addButton);
    fields->addLayout(lastLine);
    layout->addWidget(m_entryFields);
    auto* escape = new QShortcut(QKeySequence::Cancel, m_entryFields);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, [this] { setShowingManualEntry(false); });

    connect(m_addressField, &QLineEdit::textChanged, this, &MachineSidebar::updateAddButton);
    connect(m_portField, &QLineEdit::textChanged, this, &MachineSidebar::updateAddButton);
    // Return in a field adds the machine and goes no further: the window's own Return is
    // for reviewing the upload.
    m_addressField->installEventFilter(this);
    m_portField->installEventFilter(this);
    updateAddButton();
    setShowingManualEntry(false);
    keepTranslated(area, [this, cancel] {
        m_enterButton->setText(tr("Enter IP address"));
        m_addressField->setPlaceholderText(tr("IP address"));
        m_addressField->setAccessibleName(tr("IP address"));
        m_portField->setPlaceholderText(tr("Port"));
        m_portField->setAccessibleName(tr("Port"));
        cancel->setText(tr("Cancel"));
        m_addButton->setText(tr("Add"));
    });
    return area;
}

void MachineSidebar::showSelection() {
    const auto& selected = m_model.selectedMachine();
    const int row = selected ? m_machines->row(selected->id()) : -1;
    m_showingSelection = true;
    if (row >= 0) {
        QItemSelection rows;
        for (const Machine& machine : m_model.selectedMachines()) {
            if (const int other = m_machines->row(machine.id()); other >= 0)
                rows.select(m_machines->index(other), m_machines->index(other));
        }
        rows.select(m_machines->index(row), m_machines->index(row));
        QItemSelectionModel* selection = m_list->selectionModel();
        if (selection->selection() != rows)
            selection->select(rows, QItemSelectionModel::ClearAndSelect);
        if (m_model.selectedMachines().size() <= 1)
            selection->setCurrentIndex(m_machines->index(row), QItemSelectionModel::NoUpdate);
    } else {
        m_list->clearSelection();
    }
    m_showingSelection = false;
}

void MachineSidebar::takeListSelection() {
    if (m_showingSelection)
        return;
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        // The list lost its selection (a click on empty space): the model's selection stays.
        showSelection();
        return;
    }
    const auto& selected = m_model.selectedMachine();
    if (rows.size() == 1) {
        const Machine& machine = m_machines->machine(rows.first().row());
        if (!selected || selected->id() != machine.id() || m_model.selectedMachines().size() > 1)
            m_model.selectMachine(machine);
        return;
    }
    // The machine selected first stays first while it is still among the rows.
    QList<Machine> machines;
    for (const QModelIndex& index : rows)
        machines.append(m_machines->machine(index.row()));
    std::stable_sort(machines.begin(), machines.end(), [this](const Machine& a, const Machine& b) {
        return m_machines->row(a.id()) < m_machines->row(b.id());
    });
    const auto first = std::find_if(machines.begin(), machines.end(), [&](const Machine& m) {
        return selected && m.id() == selected->id();
    });
    if (first != machines.end())
        std::rotate(machines.begin(), first, first + 1);
    m_model.selectMachines(machines);
}

bool MachineSidebar::eventFilter(QObject* watched, QEvent* event) {
    if ((watched == m_addressField || watched == m_portField) &&
        event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            addManualMachine();
            return true;
        }
    }
    if (watched == m_list->viewport() && event->type() == QEvent::MouseButtonPress) {
        const auto& selected = m_model.selectedMachine();
        m_selectedBeforePress = selected ? selected->id() : QString();
    }
    return QWidget::eventFilter(watched, event);
}

void MachineSidebar::checkAgainOnClick(const QModelIndex& index) {
    // A click on the machine that was already selected is the user asking whether it is
    // still there; a click that selects a machine has started its check already.
    if (index.data(MachineListModel::IdRole).toString() == m_selectedBeforePress &&
        !m_model.isCheckingConnection())
        m_model.checkSelectedMachine();
}

void MachineSidebar::showListLimit() {
    m_limitNote->setVisible(m_model.isMachineListFull());
}

void MachineSidebar::showScanState() {
    const bool discovering = m_model.isDiscovering();
    if (discovering)
        m_scanned = true;
    m_scanButton->setEnabled(!discovering);
    m_scanButton->setIcon(icons::icon(discovering ? QStringLiteral("arrow.triangle.2.circlepath")
                                                  : QStringLiteral("arrow.clockwise")));
    m_scanButton->setProperty("symbol", discovering ? QStringLiteral("arrow.triangle.2.circlepath")
                                                    : QStringLiteral("arrow.clockwise"));
    const bool nothingFound = m_scanned && !discovering && m_model.machines().isEmpty();
    m_listArea->setCurrentWidget(nothingFound ? static_cast<QWidget*>(m_emptyHint) : m_list);
}

void MachineSidebar::setShowingManualEntry(bool showing) {
    const bool fieldsHadFocus = m_entryFields->isAncestorOf(window()->focusWidget());
    m_enterButton->setVisible(!showing);
    m_entryFields->setVisible(showing);
    if (showing)
        m_addressField->setFocus();
    else if (fieldsHadFocus)
        m_enterButton->setFocus();
}

void MachineSidebar::updateAddButton() {
    m_addButton->setEnabled(canAddManualMachine(m_addressField->text(), m_portField->text()));
}

void MachineSidebar::addManualMachine() {
    if (!m_addButton->isEnabled())
        return;
    const auto failure =
        m_model.addManualMachine(m_addressField->text(), portForManualEntry(m_portField->text()));
    if (failure)
        m_model.setErrorMessage(tr("Enter a valid IPv4 address and port."));
    else
        setShowingManualEntry(false);
}

} // namespace tarnwick::ui
