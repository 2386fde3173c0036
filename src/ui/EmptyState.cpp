#include "ui/EmptyState.h"

#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tarnwick::ui {

QWidget* makeEmptyState(const QString& title, const QString& symbol, const QString& description,
                        QWidget* parent) {
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(8, 14, 8, 14);
    layout->setSpacing(6);
    auto* icon = new SymbolLabel(symbol, 28, style::secondaryText, panel);
    layout->addWidget(icon, 0, Qt::AlignHCenter);
    auto* titleLabel = new QLabel(title, panel);
    titleLabel->setObjectName(QStringLiteral("emptyTitle"));
    titleLabel->setFont(style::font(style::TextStyle::Title3, panel));
    layout->addWidget(titleLabel, 0, Qt::AlignHCenter);
    auto* descriptionLabel = new QLabel(description, panel);
    descriptionLabel->setObjectName(QStringLiteral("emptyDescription"));
    descriptionLabel->setWordWrap(true);
    descriptionLabel->setAlignment(Qt::AlignHCenter);
    style::makeSecondary(descriptionLabel);
    layout->addWidget(descriptionLabel);
    return panel;
}

} // namespace tarnwick::ui
