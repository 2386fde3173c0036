#pragma once

#include <QMessageBox>

namespace tarnwick::ui {

// Puts an alert's title and message where the platform shows them: macOS alerts have no title
// bar, so the title leads the text there; elsewhere it is the window title.
inline void setAlertText(QMessageBox* alert, const QString& title, const QString& message) {
    alert->setWindowTitle(title);
#ifdef Q_OS_MACOS
    alert->setText(title);
    alert->setInformativeText(message);
#else
    alert->setText(message);
#endif
}

} // namespace tarnwick::ui
