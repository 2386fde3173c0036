#include "ui/ToggleSwitch.h"

#include <QPainter>
#include <QPainterPath>

namespace tarnwick::ui {

ToggleSwitch::ToggleSwitch(const QString& text, QWidget* parent)
    : QAbstractButton(parent) {
    setText(text);
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(text()) + 12 + trackWidth + 4,
            std::max(metrics.height(), trackHeight) + 4};
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();

    const QRect textArea = rect().adjusted(0, 0, -(trackWidth + 16), 0);
    painter.setPen(
        colors.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(textArea, Qt::AlignLeft | Qt::AlignVCenter, text());

    const QRectF track(width() - trackWidth - 2, (height() - trackHeight) / 2.0, trackWidth,
                       trackHeight);
    QColor trackColor =
        isChecked() ? colors.color(QPalette::Highlight) : colors.color(QPalette::Mid);
    if (!isEnabled())
        trackColor.setAlphaF(0.4f);
    QPainterPath trackPath;
    trackPath.addRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);
    painter.fillPath(trackPath, trackColor);
    if (hasFocus()) {
        painter.setPen(QPen(colors.color(QPalette::Highlight).lighter(130), 2));
        painter.drawPath(trackPath);
    }

    const qreal knob = trackHeight - 4;
    const qreal knobX = isChecked() ? track.right() - knob - 2 : track.left() + 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(knobX, track.top() + 2, knob, knob));
}

} // namespace tarnwick::ui
