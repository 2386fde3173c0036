#pragma once

#include <QColor>
#include <QLabel>

#include <functional>

namespace tarnwick::ui {

// One of the project's symbols at a fixed size, in a colour taken from the palette when it is
// painted. Decorative: it carries no text for assistive technology.
class SymbolLabel : public QLabel {
    Q_OBJECT

public:
    using ColorSource = std::function<QColor(const QWidget*)>;

    SymbolLabel(const QString& symbol, int size, ColorSource color, QWidget* parent = nullptr);

    void setSymbol(const QString& symbol);
    QString symbol() const { return m_symbol; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void render();

    QString m_symbol;
    int m_size;
    ColorSource m_color;
};

} // namespace tarnwick::ui
