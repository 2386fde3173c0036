#include "ui/MachineRow.h"

#include "ui/StatusBadge.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tarnwick::ui {

MachineRow::MachineRow(const Machine& machine, QWidget* parent)
    : QWidget(parent)
    , m_machine(machine) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->setSpacing(10);

    auto* dot = new StatusDot(machine.status, this);
    dot->setObjectName(QStringLiteral("statusDot"));
    row->addWidget(dot, 0, Qt::AlignVCenter);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    auto* name = new QLabel(machine.name, this);
    name->setObjectName(QStringLiteral("machineName"));
    auto* address = new QLabel(machine.ipAddress, this);
    address->setObjectName(QStringLiteral("machineAddress"));
    address->setFont(style::monospaced(style::TextStyle::Caption, this));
    style::makeSecondary(address);
    texts->addWidget(name);
    texts->addWidget(address);
    row->addLayout(texts, 1);

    if (machine.status == Machine::ConnectionStatus::Busy) {
        auto* busy = new QLabel(QStringLiteral("Busy"), this);
        busy->setObjectName(QStringLiteral("busyLabel"));
        busy->setFont(style::font(style::TextStyle::Caption, this));
        style::setTextColor(busy, style::orange());
        row->addWidget(busy, 0, Qt::AlignVCenter);
    }
}

} // namespace tarnwick::ui
