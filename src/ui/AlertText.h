#pragma once

#include <QMessageBox>

namespace tarnwick::ui {

// Puts an alert's title where every platform shows it plainly: as the box's main text, with
// the message below it. Title bars are cut short or barely visible on many desktops, and a
// macOS alert has none.
inline void setAlertText(QMessageBox* alert, const QString& title, const QString& message,
                         QMessageBox::Icon icon) {
    alert->setWindowTitle(title);
    alert->setIcon(icon);
    alert->setText(title);
    alert->setInformativeText(message);
    // Wide enough that a short message does not make a cramped box; the title reads as one.
    alert->setStyleSheet(
        QStringLiteral("QLabel#qt_msgbox_label { font-weight: bold; min-width: 22em; }"
                       "QLabel#qt_msgbox_informativelabel { min-width: 22em; }"));
}

} // namespace tarnwick::ui
