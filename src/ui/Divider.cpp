#include "ui/Divider.h"

#include "ui/Style.h"

#include <QPainter>

namespace tarnwick::ui {

Divider::Divider(QWidget* parent)
    : QWidget(parent) {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), style::withAlpha(palette().color(QPalette::WindowText), 0.12));
}

} // namespace tarnwick::ui
