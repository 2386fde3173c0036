#include "ui/SectionBox.h"

#include "ui/RoundedPanel.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

QColor panelOutline(const QWidget* widget) {
    return style::withAlpha(widget->palette().color(QPalette::WindowText), 0.10);
}

} // namespace

SectionBox::SectionBox(const QString& symbol, QWidget* content, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);

    auto* titleRow = new QHBoxLayout;
    titleRow->setSpacing(6);
    titleRow->addWidget(new SymbolLabel(
        symbol, 15, [](const QWidget* w) { return w->palette().color(QPalette::WindowText); }));
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("sectionTitle"));
    m_title->setFont(style::font(style::TextStyle::Headline, this));
    titleRow->addWidget(m_title);
    titleRow->addStretch();
    layout->addLayout(titleRow);

    auto* panel = new RoundedPanel(10, style::panelFill, panelOutline, this);
    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(12, 10, 12, 10);
    panelLayout->addWidget(content);
    layout->addWidget(panel);
}

void SectionBox::setTitle(const QString& title) {
    m_title->setText(title);
}

} // namespace tarnwick::ui
