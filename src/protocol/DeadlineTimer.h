#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace tarnwick {

// A single-shot protocol timer that never fires before its time: the machine sees our pauses and
// time-outs, and even a precise QTimer may wake a little early, so an early wake re-arms for what
// is left.
class DeadlineTimer : public QObject {
    Q_OBJECT

public:
    explicit DeadlineTimer(QObject* parent = nullptr);

    void start(std::chrono::milliseconds duration);
    void stop();
    bool isActive() const { return m_timer.isActive(); }
    std::chrono::milliseconds remaining() const;

Q_SIGNALS:
    void expired();

private:
    void woke();

    QTimer m_timer;
    QDeadlineTimer m_deadline;
};

} // namespace tarnwick
