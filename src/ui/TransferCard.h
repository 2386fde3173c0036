#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The running or last transfer: phase, percentage, bar, byte counts, rate, time left, cancel.
class TransferCard : public QWidget {
    Q_OBJECT

public:
    explicit TransferCard(AppModel& model, QWidget* parent = nullptr);

private:
    void showProgress();

    AppModel& m_model;
    QLabel* m_title;
    QLabel* m_percent;
    QProgressBar* m_bar;
    QLabel* m_bytes;
    QLabel* m_rate;
    QLabel* m_timeLeft;
    QPushButton* m_cancel;
};

} // namespace tarnwick::ui
