#include "ui/SymbolLabel.h"

#include "ui/Icons.h"

#include <QEvent>

namespace tarnwick::ui {

SymbolLabel::SymbolLabel(const QString& symbol, int size, ColorSource color, QWidget* parent)
    : QLabel(parent)
    , m_symbol(symbol)
    , m_size(size)
    , m_color(std::move(color)) {
    setFixedSize(size, size);
    setAccessibleName(QString());
    render();
}

void SymbolLabel::setSymbol(const QString& symbol) {
    if (symbol == m_symbol)
        return;
    m_symbol = symbol;
    render();
}

void SymbolLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        render();
    QLabel::changeEvent(event);
}

void SymbolLabel::render() {
    setPixmap(icons::tintedPixmap(m_symbol, m_color(this), m_size, devicePixelRatioF()));
}

} // namespace tarnwick::ui
