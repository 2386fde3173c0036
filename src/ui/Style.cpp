#include "ui/Style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QStyleOptionViewItem>
#include <QWidget>

namespace tarnwick::ui::style {

QColor statusColor(Machine::ConnectionStatus status) {
    switch (status) {
    case Machine::ConnectionStatus::Discovered:
        return QColor(0x1E, 0x7C, 0xF2);
    case Machine::ConnectionStatus::Connecting:
        // Darker than a pure yellow so the word stays legible on a light background.
        return QColor(0xD9, 0xA4, 0x00);
    case Machine::ConnectionStatus::Connected:
        return green();
    case Machine::ConnectionStatus::Busy:
        return orange();
    case Machine::ConnectionStatus::Unavailable:
        return QColor(0xE5, 0x3A, 0x30);
    }
    return {};
}

QColor green() {
    return QColor(0x2B, 0xA8, 0x4A);
}

QColor orange() {
    return QColor(0xF0, 0x8A, 0x00);
}

QColor withAlpha(QColor color, double opacity) {
    color.setAlphaF(float(opacity));
    return color;
}

QColor secondaryText(const QWidget* widget) {
    const QPalette palette = widget ? widget->palette() : QApplication::palette();
    const QColor placeholder = palette.color(QPalette::PlaceholderText);
    if (placeholder.isValid() && placeholder != palette.color(QPalette::WindowText))
        return placeholder;
    // Halfway between the text and the window is legible in both appearances.
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    return QColor((text.red() + window.red()) / 2, (text.green() + window.green()) / 2,
                  (text.blue() + window.blue()) / 2);
}

QColor accent(const QWidget* widget) {
    const QPalette palette = widget ? widget->palette() : QApplication::palette();
    return palette.color(QPalette::Highlight);
}

QColor panelFill(const QWidget* widget) {
    const QPalette& palette = widget->palette();
    const QColor window = palette.color(QPalette::Window);
    return window.lightness() > 128 ? palette.color(QPalette::Base) : window.lighter(125);
}

QFont font(TextStyle textStyle, const QWidget* widget) {
    QFont font = widget ? widget->font() : QApplication::font();
    const qreal base =
        QApplication::font().pointSizeF() > 0 ? QApplication::font().pointSizeF() : 10.0;
    switch (textStyle) {
    case TextStyle::Body:
        font.setPointSizeF(base);
        break;
    case TextStyle::Headline:
        font.setPointSizeF(base);
        font.setWeight(QFont::DemiBold);
        break;
    case TextStyle::Title2:
        font.setPointSizeF(base * 1.35);
        font.setWeight(QFont::DemiBold);
        break;
    case TextStyle::Title3:
        font.setPointSizeF(base * 1.2);
        break;
    case TextStyle::Callout:
        font.setPointSizeF(base * 0.95);
        break;
    case TextStyle::Caption:
        font.setPointSizeF(base * 0.85);
        break;
    }
    return font;
}

QFont monospaced(TextStyle textStyle, const QWidget* widget) {
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Where the system's fixed font is not one, the hint still picks a monospaced face.
    mono.setStyleHint(QFont::Monospace);
    mono.setPointSizeF(font(textStyle, widget).pointSizeF());
    return mono;
}

QFont rounded(QFont font) {
    // Families tried in order: macOS's own rounded faces, then rounded faces Linux desktops
    // often have; the font's own family ends the list.
    QStringList families = {QStringLiteral("SF Pro Rounded"),
                            QStringLiteral("Arial Rounded MT Bold"), QStringLiteral("Nunito"),
                            QStringLiteral("Varela Round"), QStringLiteral("M PLUS Rounded 1c")};
    families.append(font.families().isEmpty() ? QStringList{font.family()} : font.families());
    font.setFamilies(families);
    return font;
}

void setTextColor(QWidget* widget, const QColor& color) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::Text, color);
    widget->setPalette(palette);
}

void makeProminent(QPushButton* button) {
    button->setDefault(true);
    button->setProperty("prominent", true);
    QPalette palette = button->palette();
    const QColor fill = accent(button);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Button, fill);
        palette.setColor(group, QPalette::ButtonText, Qt::white);
    }
    button->setPalette(palette);
}

void makeSecondary(QLabel* label) {
    // A role rather than a colour, so the text follows a change between light and dark.
    label->setForegroundRole(QPalette::PlaceholderText);
}

void tintSelection(QAbstractItemView* list) {
    QPalette palette = list->palette();
    const QColor tint = withAlpha(palette.color(QPalette::Highlight), 0.28);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Highlight, tint);
        palette.setColor(group, QPalette::HighlightedText, palette.color(QPalette::WindowText));
    }
    list->setPalette(palette);
}

void drawRowBackground(QPainter* painter, const QStyleOptionViewItem& option) {
    QStyleOptionViewItem background = option;
    background.text.clear();
    background.icon = {};
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, widget);
}

} // namespace tarnwick::ui::style
