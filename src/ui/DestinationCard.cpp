#include "ui/DestinationCard.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "ui/ElidedLabel.h"
#include "ui/EmptyState.h"
#include "ui/Formatting.h"
#include "ui/MachineLimitsDialog.h"
#include "ui/Retranslation.h"
#include "ui/RoundedPanel.h"
#include "ui/SelectedMachinesView.h"
#include "ui/StatusBadge.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

DestinationCard::DestinationCard(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("destinationCard"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_machinePage = new QWidget(this);
    m_machinePage->setObjectName(QStringLiteral("destinationMachine"));
    auto* row = new QHBoxLayout(m_machinePage);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(16);
    auto* iconSquare = new RoundedPanel(
        11, [](const QWidget* w) { return style::withAlpha(style::accent(w), 0.1); }, {},
        m_machinePage);
    iconSquare->setFixedSize(48, 48);
    auto* iconLayout = new QVBoxLayout(iconSquare);
    iconLayout->setContentsMargins(0, 0, 0, 0);
    iconLayout->addWidget(new SymbolLabel(QStringLiteral("desktopcomputer"), 28, style::accent), 0,
                          Qt::AlignCenter);
    row->addWidget(iconSquare);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    m_name = new ElidedLabel(m_machinePage);
    m_name->setObjectName(QStringLiteral("destinationName"));
    m_name->setFont(style::font(style::TextStyle::Headline, this));
    m_subtitle = new ElidedLabel(m_machinePage);
    m_subtitle->setObjectName(QStringLiteral("destinationSubtitle"));
    m_subtitle->setCopyable(true);
    style::makeSecondary(m_subtitle);
    // A check finds a busy machine reachable all the same, and its badge then says so.
    m_busy = new QLabel(m_machinePage);
    m_busy->setObjectName(QStringLiteral("destinationBusy"));
    m_busy->setWordWrap(true);
    style::setTextColor(m_busy, style::orange());
    texts->addWidget(m_name);
    texts->addWidget(m_subtitle);
    texts->addWidget(m_busy);
    row->addLayout(texts, 1);
    m_badge = new StatusBadge(Machine::ConnectionStatus::Discovered, m_machinePage);
    m_badge->setObjectName(QStringLiteral("statusBadge"));
    row->addWidget(m_badge, 0, Qt::AlignVCenter);
    // The stored status of a machine can be old news; the user can always ask again.
    m_checkAgain = new QPushButton(m_machinePage);
    m_checkAgain->setObjectName(QStringLiteral("checkAgainButton"));
    connect(m_checkAgain, &QPushButton::clicked, &m_model, &AppModel::checkSelectedMachine);
    row->addWidget(m_checkAgain, 0, Qt::AlignVCenter);
    auto* limits = new QPushButton(m_machinePage);
    limits->setObjectName(QStringLiteral("machineLimitsButton"));
    connect(limits, &QPushButton::clicked, this,
            [this] { MachineLimitsDialog::editSelected(m_model, this); });
    row->addWidget(limits, 0, Qt::AlignVCenter);
    layout->addWidget(m_machinePage);
    layout->addWidget(new SelectedMachinesView(m_model, this));

    m_emptyPage = new EmptyState(QStringLiteral("wifi"), this);
    m_emptyPage->setObjectName(QStringLiteral("destinationEmpty"));
    layout->addWidget(m_emptyPage);

    connect(&m_model, &AppModel::selectedMachineChanged, this, &DestinationCard::showSelection);
    connect(&m_model, &AppModel::selectedMachinesChanged, this, &DestinationCard::showSelection);
    connect(&m_model, &AppModel::isCheckingConnectionChanged, this,
            &DestinationCard::showSelection);
    connect(&m_model, &AppModel::isSelectedMachineBusyChanged, this,
            &DestinationCard::showSelection);
    keepTranslated(this, [this, limits] {
        m_busy->setText(busyNotice());
        m_checkAgain->setText(tr("Check Again"));
        m_checkAgain->setToolTip(tr("Check whether the machine answers"));
        limits->setText(tr("Machine limits\u2026"));
        limits->setToolTip(tr("Enter what this machine can do, so that each job is checked"));
        m_emptyPage->setTexts(tr("Choose a destination"),
                              tr("Select a discovered machine or enter its IP address."));
        showSelection();
    });
}

void DestinationCard::showSelection() {
    const auto& machine = m_model.selectedMachine();
    m_machinePage->setVisible(machine && m_model.selectedMachines().size() <= 1);
    m_emptyPage->setVisible(!machine);
    if (!machine)
        return;
    m_name->setFullText(displayName(machine->name));
    m_subtitle->setFullText(machineSubtitle(*machine));
    m_badge->setStatus(machine->status);
    m_busy->setVisible(m_model.isSelectedMachineBusy());
    m_checkAgain->setEnabled(!m_model.isCheckingConnection());
}

} // namespace tarnwick::ui
