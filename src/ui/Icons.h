#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace tarnwick::ui::icons {

// The icon with the given symbol name ("arrow.clockwise", "folder", …): the platform theme's
// icon where it has a matching one, else the project's own drawing in the palette's text colour.
QIcon icon(const QString& name);

// The project's own drawing of the symbol, filled with one colour, for icons that carry meaning
// through their colour (accent, status, warning).
QIcon tinted(const QString& name, const QColor& color);
QPixmap tintedPixmap(const QString& name, const QColor& color, int size, qreal devicePixelRatio);

// Whether the project draws the symbol: every name the windows use is one of them.
bool hasSymbol(const QString& name);

QIcon applicationIcon();

} // namespace tarnwick::ui::icons
