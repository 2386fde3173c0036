#pragma once

#include "ui/UpdateAlertContent.h"
#include "update/UpdateChecker.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
class QWidget;

namespace tarnwick::ui {

// What the alert says for the checker's current outcome, or for none while it closes.
UpdateAlertContent updateAlertContent(const std::optional<UpdateChecker::Outcome>& outcome,
                                      const QString& updateHost);

// Shows every result of the update checker in an alert on the main window. Dismissing the
// alert by any button clears the outcome; the alert never sets one.
class UpdateAlert : public QObject {
    Q_OBJECT

public:
    UpdateAlert(UpdateChecker& checker, QWidget* window);

    QMessageBox* alert() const { return m_alert; }

private:
    void showOutcome();

    UpdateChecker& m_checker;
    QWidget* m_window;
    QPointer<QMessageBox> m_alert;
};

} // namespace tarnwick::ui
