#include "ui/MachineSidebar.h"

#include "app/AppModel.h"
#include "ui/Icons.h"
#include "ui/MachineRow.h"
#include "ui/ManualEntryRules.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

const QString noMachinesText = QStringLiteral(
    "No machine answered the scan.\n\n"
    "This usually means that the system does not allow Tarnwick to use the local network, that "
    "a firewall blocks UDP port 3333, or that the machine is on another subnet or reached "
    "through a VPN.\n\n"
    "Use \u201CEnter IP address\u201D below to add the machine by its address.");

} // namespace

MachineSidebar::MachineSidebar(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("machineSidebar"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    layout->addWidget(makeTitleRow());

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("machineList"));
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A tinted selection keeps the rows' own colours (status dot, secondary address) legible.
    QPalette listPalette = m_list->palette();
    const QColor tint = style::withAlpha(listPalette.color(QPalette::Highlight), 0.28);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        listPalette.setColor(group, QPalette::Highlight, tint);
        listPalette.setColor(group, QPalette::HighlightedText,
                             listPalette.color(QPalette::WindowText));
    }
    m_list->setPalette(listPalette);
    m_emptyHint = new QLabel(noMachinesText, this);
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

    layout->addWidget(makeManualEntry());

    connect(m_list, &QListWidget::itemSelectionChanged, this, &MachineSidebar::takeListSelection);
    connect(&m_model, &AppModel::machinesChanged, this, &MachineSidebar::showMachines);
    connect(&m_model, &AppModel::selectedMachineChanged, this, &MachineSidebar::showSelection);
    connect(&m_model, &AppModel::isDiscoveringChanged, this, &MachineSidebar::showScanState);
    showMachines();
    showScanState();
}

QWidget* MachineSidebar::makeTitleRow() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(18, 18, 18, 18);

    auto* titles = new QVBoxLayout;
    titles->setSpacing(1);
    auto* title = new QLabel(QStringLiteral("Machines"), row);
    title->setFont(style::font(style::TextStyle::Title2, row));
    auto* caption = new QLabel(QStringLiteral("Local network"), row);
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
    m_scanButton->setToolTip(QStringLiteral("Scan for Makera machines"));
    m_scanButton->setAccessibleName(QStringLiteral("Scan for Makera machines"));
    connect(m_scanButton, &QToolButton::clicked, &m_model, &AppModel::discover);
    layout->addWidget(m_scanButton, 0, Qt::AlignVCenter);
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

    m_enterButton = new QPushButton(icons::icon(QStringLiteral("plus")),
                                    QStringLiteral("Enter IP address"), area);
    m_enterButton->setObjectName(QStringLiteral("enterAddressButton"));
    connect(m_enterButton, &QPushButton::clicked, this, [this] { setShowingManualEntry(true); });
    layout->addWidget(m_enterButton);

    m_entryFields = new QWidget(area);
    auto* fields = new QVBoxLayout(m_entryFields);
    fields->setContentsMargins(0, 0, 0, 0);
    fields->setSpacing(10);
    m_addressField = new QLineEdit(m_entryFields);
    m_addressField->setObjectName(QStringLiteral("addressField"));
    m_addressField->setPlaceholderText(QStringLiteral("IP address"));
    m_addressField->setClearButtonEnabled(true);
    fields->addWidget(m_addressField);

    auto* lastLine = new QHBoxLayout;
    m_portField = new QLineEdit(QString::number(defaultMachinePort), m_entryFields);
    m_portField->setObjectName(QStringLiteral("portField"));
    m_portField->setPlaceholderText(QStringLiteral("Port"));
    m_portField->setFixedWidth(80);
    lastLine->addWidget(m_portField);
    lastLine->addStretch();
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), m_entryFields);
    cancel->setObjectName(QStringLiteral("cancelEntryButton"));
    connect(cancel, &QPushButton::clicked, this, [this] { setShowingManualEntry(false); });
    lastLine->addWidget(cancel);
    m_addButton = new QPushButton(QStringLiteral("Add"), m_entryFields);
    m_addButton->setObjectName(QStringLiteral("addButton"));
    m_addButton->setDefault(true);
    connect(m_addButton, &QPushButton::clicked, this, &MachineSidebar::addManualMachine);
    lastLine->addWidget(m_addButton);
    fields->addLayout(lastLine);
    layout->addWidget(m_entryFields);

    connect(m_addressField, &QLineEdit::textChanged, this, &MachineSidebar::updateAddButton);
    connect(m_portField, &QLineEdit::textChanged, this, &MachineSidebar::updateAddButton);
    connect(m_addressField, &QLineEdit::returnPressed, m_addButton, &QPushButton::click);
    connect(m_portField, &QLineEdit::returnPressed, m_addButton, &QPushButton::click);
    updateAddButton();
    setShowingManualEntry(false);
    return area;
}

void MachineSidebar::showMachines() {
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    for (const Machine& machine : m_model.machines()) {
        auto* item = new QListWidgetItem(m_list);
        item->setData(Qt::AccessibleTextRole, machine.name);
        auto* row = new MachineRow(machine);
        item->setSizeHint(row->sizeHint());
        m_list->setItemWidget(item, row);
    }
    showSelection();
    showScanState();
}

void MachineSidebar::showSelection() {
    const QSignalBlocker blocker(m_list);
    const auto& selected = m_model.selectedMachine();
    const QList<Machine>& machines = m_model.machines();
    for (int i = 0; i < machines.size(); ++i) {
        if (selected && machines[i].id() == selected->id()) {
            m_list->setCurrentRow(i, QItemSelectionModel::ClearAndSelect);
            return;
        }
    }
    m_list->clearSelection();
}

void MachineSidebar::takeListSelection() {
    const QList<QListWidgetItem*> items = m_list->selectedItems();
    const int row = items.isEmpty() ? -1 : m_list->row(items.first());
    if (row < 0 || row >= m_model.machines().size()) {
        // The list lost its selection (a click on empty space): the model's selection stays.
        showSelection();
        return;
    }
    // Selecting rebuilds the rows, and the click that caused this is still being delivered to
    // one of them: let it finish first.
    const Machine machine = m_model.machines()[row];
    QMetaObject::invokeMethod(
        this, [this, machine] { m_model.selectMachine(machine); }, Qt::QueuedConnection);
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
    m_enterButton->setVisible(!showing);
    m_entryFields->setVisible(showing);
    if (showing)
        m_addressField->setFocus();
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
        m_model.setErrorMessage(QStringLiteral("Enter a valid IPv4 address and port."));
    else
        setShowingManualEntry(false);
}

} // namespace tarnwick::ui
