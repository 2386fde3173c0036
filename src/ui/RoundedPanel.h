#pragma once

#include <QColor>
#include <QWidget>

#include <functional>

namespace tarnwick::ui {

// A rounded rectangle behind its children: a fill and an optional one-pixel outline. Its colours
// are functions of the palette so they follow light and dark appearance.
class RoundedPanel : public QWidget {
    Q_OBJECT

public:
    using ColorSource = std::function<QColor(const QWidget*)>;

    RoundedPanel(qreal radius, ColorSource fill, ColorSource outline = {},
                 QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    qreal m_radius;
    ColorSource m_fill;
    ColorSource m_outline;
};

} // namespace tarnwick::ui
