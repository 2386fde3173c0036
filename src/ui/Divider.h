#pragma once

#include <QWidget>

namespace tarnwick::ui {

// A one-pixel horizontal line, faint in light and dark palettes alike.
class Divider : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tarnwick::ui
