#pragma once

#include "app/Errors.h"

#include <QWidget>

#include <optional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tarnwick {
class AppModel;
struct UploadOutcome;
} // namespace tarnwick

namespace tarnwick::ui {

class ElidedLabel;
class SymbolLabel;

// The running or last transfer: what goes where, phase, percentage, bar, byte counts, rate, time
// left and cancel; how a failed upload ended, until the next one starts.
class TransferCard : public QWidget {
    Q_OBJECT

public:
    explicit TransferCard(AppModel& model, QWidget* parent = nullptr);

    // Whether there is anything to show: a check of the file, a transfer or its failure.
    bool hasContent() const;

Q_SIGNALS:
    void hasContentChanged();

private:
    void followUpload();
    void showEnding(const UploadOutcome& outcome);
    void showProgress();
    void showChecking(double fraction);

    AppModel& m_model;
    QString m_fileName;
    QString m_machineName;
    // Kept as the error, so that its text follows the language.
    std::optional<Error> m_failure;
    SymbolLabel* m_failureIcon;
    QLabel* m_title;
    QLabel* m_percent;
    ElidedLabel* m_subject;
    QProgressBar* m_bar;
    QLabel* m_bytes;
    QLabel* m_rate;
    QLabel* m_timeLeft;
    QPushButton* m_cancel;
    QLabel* m_failureText;
};

} // namespace tarnwick::ui
