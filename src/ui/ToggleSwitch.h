#pragma once

#include <QAbstractButton>

namespace tarnwick::ui {

// A checkable button drawn as a sliding switch, with its label on the left.
class ToggleSwitch : public QAbstractButton {
    Q_OBJECT

public:
    explicit ToggleSwitch(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int trackWidth = 34;
    static constexpr int trackHeight = 20;
};

} // namespace tarnwick::ui
