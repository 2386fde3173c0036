#pragma once

#include "app/Machine.h"

#include <QLabel>
#include <QWidget>

namespace tarnwick::ui {

// The status word on a capsule tinted with the status colour.
class StatusBadge : public QLabel {
    Q_OBJECT

public:
    explicit StatusBadge(Machine::ConnectionStatus status, QWidget* parent = nullptr);

    void setStatus(Machine::ConnectionStatus status);
    Machine::ConnectionStatus status() const { return m_status; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Machine::ConnectionStatus m_status;
};

// The filled circle in the status colour that leads each machine row.
class StatusDot : public QWidget {
    Q_OBJECT

public:
    explicit StatusDot(Machine::ConnectionStatus status, QWidget* parent = nullptr);

    QColor color() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Machine::ConnectionStatus m_status;
};

} // namespace tarnwick::ui
