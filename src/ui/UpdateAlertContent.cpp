#include "ui/UpdateAlertContent.h"

#include <QCoreApplication>

namespace tarnwick::ui {

namespace {

// Free functions have no tr() of their own; a class that only declares the context gives them one
// that the catalogue tools read.
class UpdateAlertTexts {
    Q_DECLARE_TR_FUNCTIONS(tarnwick::ui::UpdateAlert)
};

} // namespace

UpdateAlertContent updateAvailableAlert(const QString& version, const QUrl& url,
                                        const QString& updateHost) {
    //: %1 is the new version, %2 the update host such as "tarnwick.app".
    const QString text =
        UpdateAlertTexts::tr("Tarnwick %1 is available from %2/quorle.").arg(version, updateHost);
    return {UpdateAlertTexts::tr("Update Available"), text, url, UpdateAlertTexts::tr("Later"),
            QMessageBox::Information};
}

UpdateAlertContent updateFailedAlert(const QString& message) {
    return {UpdateAlertTexts::tr("Update Check Failed"), message, std::nullopt,
            UpdateAlertTexts::tr("OK"), QMessageBox::Warning};
}

UpdateAlertContent upToDateAlert() {
    return {UpdateAlertTexts::tr("Up to Date"),
            UpdateAlertTexts::tr("You are running the latest version of Tarnwick."), std::nullopt,
            UpdateAlertTexts::tr("OK"), QMessageBox::Information};
}

UpdateAlertContent noOutcomeAlert() {
    return {UpdateAlertTexts::tr("Updates"), QString(), std::nullopt, std::nullopt,
            QMessageBox::NoIcon};
}

} // namespace tarnwick::ui
