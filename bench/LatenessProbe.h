#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <vector>

namespace tarnwick::bench {

inline constexpr qint64 tickNs = 2'000'000;

// Measures the delay between each tick's due time and the moment it runs.
class LatenessProbe : public QObject {
public:
    explicit LatenessProbe(QObject* parent)
        : QObject(parent)
        , m_timer(this) {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(std::chrono::nanoseconds(tickNs) / std::chrono::milliseconds(1));
        QObject::connect(&m_timer, &QTimer::timeout, this, &LatenessProbe::tick);
        m_clock.start();
        m_due = tickNs;
        m_timer.start();
    }

    void report(QTextStream& out) {
        std::sort(m_lateness.begin(), m_lateness.end());
        const auto ms = [](qint64 ns) { return double(ns) / 1e6; };
        const qint64 worst = m_lateness.empty() ? 0 : m_lateness.back();
        const qint64 p99 = m_lateness.empty() ? 0 : m_lateness[m_lateness.size() * 99 / 100];
        out << "worst-lateness-ms " << ms(worst) << "\np99-lateness-ms " << ms(p99) << "\nticks "
            << m_lateness.size() << Qt::endl;
    }

private:
    void tick() {
        const qint64 now = m_clock.nsecsElapsed();
        m_lateness.push_back(std::max<qint64>(0, now - m_due));
        m_due = now + tickNs;
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_due = 0;
    std::vector<qint64> m_lateness;
};

} // namespace tarnwick::bench
