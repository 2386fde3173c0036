#include "ui/UpdateAlertContent.h"

#include <QCoreApplication>

namespace tarnwick::ui {

namespace {

QString translated(const char* source) {
    return QCoreApplication::translate("tarnwick::ui::UpdateAlert", source);
}

} // namespace

UpdateAlertContent updateAvailableAlert(const QString& version, const QUrl& url,
                                        const QString& updateHost) {
    //: %1 is the new version, %2 the update host such as "tarnwick.app".
    return {translated("Update Available"),
            translated("Tarnwick %1 is available from %2/quorle.").arg(version, updateHost), url,
            translated("Later"), QMessageBox::Information};
}

UpdateAlertContent updateFailedAlert(const QString& message) {
    return {translated("Update Check Failed"), message, std::nullopt, translated("OK"),
            QMessageBox::Warning};
}

UpdateAlertContent upToDateAlert() {
    return {translated("Up to Date"), translated("You are running the latest version of Tarnwick."),
            std::nullopt, translated("OK"), QMessageBox::Information};
}

UpdateAlertContent noOutcomeAlert() {
    return {translated("Updates"), QString(), std::nullopt, std::nullopt, QMessageBox::NoIcon};
}

} // namespace tarnwick::ui
