#include "protocol/DeadlineTimer.h"

namespace tarnwick {

DeadlineTimer::DeadlineTimer(QObject* parent)
    : QObject(parent)
    , m_timer(this) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &DeadlineTimer::woke);
}

void DeadlineTimer::start(std::chrono::milliseconds duration) {
    m_deadline = QDeadlineTimer(duration, Qt::PreciseTimer);
    m_timer.start(duration);
}

void DeadlineTimer::stop() {
    m_timer.stop();
}

std::chrono::milliseconds DeadlineTimer::remaining() const {
    return std::chrono::ceil<std::chrono::milliseconds>(m_deadline.remainingTimeAsDuration());
}

void DeadlineTimer::woke() {
    if (!m_deadline.hasExpired()) {
        // Rounded up: the next wake is at or after the deadline.
        m_timer.start(remaining() + std::chrono::milliseconds(1));
        return;
    }
    Q_EMIT expired();
}

} // namespace tarnwick
