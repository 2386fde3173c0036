#include "ui/EmptyState.h"

#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tarnwick::ui {

EmptyState::EmptyState(const QString& symbol, QWidget* parent)
    : QWidget(parent)
    , m_title(new QLabel(this))
    , m_description(new QLabel(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 14, 8, 14);
    layout->setSpacing(6);
    auto* icon = new SymbolLabel(symbol, 28, style::secondaryText, this);
    layout->addWidget(icon, 0, Qt::AlignHCenter);
    m_title->setObjectName(QStringLiteral("emptyTitle"));
    m_title->setFont(style::font(style::TextStyle::Title3, this));
    layout->addWidget(m_title, 0, Qt::AlignHCenter);
    m_description->setObjectName(QStringLiteral("emptyDescription"));
    m_description->setWordWrap(true);
    m_description->setAlignment(Qt::AlignHCenter);
    style::makeSecondary(m_description);
    layout->addWidget(m_description);
}

void EmptyState::setTexts(const QString& title, const QString& description) {
    m_title->setText(title);
    m_description->setText(description);
}

} // namespace tarnwick::ui
