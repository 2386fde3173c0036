#pragma once

#include "app/Machine.h"

#include <QColor>
#include <QFont>

class QAbstractItemView;
class QLabel;
class QPainter;
class QPushButton;
class QStyleOptionViewItem;
class QWidget;

namespace tarnwick::ui {

// The few colours and type sizes the windows share, derived from the palette so that light and
// dark appearances both read well.
namespace style {

QColor statusColor(Machine::ConnectionStatus status);
QColor green();
QColor orange();
QColor withAlpha(QColor color, double opacity);

// Secondary text: the palette's placeholder colour, a mid-tone in light and dark palettes.
QColor secondaryText(const QWidget* widget);
QColor accent(const QWidget* widget);
// The fill of a section's panel: lighter than the window in a light palette, a step brighter
// in a dark one.
QColor panelFill(const QWidget* widget);

enum class TextStyle {
    Body,
    Headline,
    Title2,
    Title3,
    Callout,
    Caption
};
QFont font(TextStyle style, const QWidget* widget);
QFont monospaced(TextStyle style, const QWidget* widget);
// The same font in a rounded design where the system has one, as it is where it has none.
QFont rounded(QFont font);

void makeSecondary(QLabel* label);
void setTextColor(QWidget* widget, const QColor& color);
// The main action of a window or sheet: filled with the accent colour so that it stands out.
void makeProminent(QPushButton* button);

// A list whose selection is a tint of the highlight colour, so that what a row draws in its own
// colours (a status dot, a progress bar, a secondary line) stays legible when it is selected.
void tintSelection(QAbstractItemView* list);
// The platform's selection and hover background of a row, beneath what its delegate draws.
void drawRowBackground(QPainter* painter, const QStyleOptionViewItem& option);

} // namespace style
} // namespace tarnwick::ui
