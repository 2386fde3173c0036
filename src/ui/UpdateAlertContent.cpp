#include "ui/UpdateAlertContent.h"

namespace tarnwick::ui {

UpdateAlertContent updateAvailableAlert(const QString& version, const QUrl& url,
                                        const QString& updateHost) {
    return {QStringLiteral("Update Available"),
            QStringLiteral("Tarnwick ") + version + QStringLiteral(" is available from ") +
                updateHost + QStringLiteral("/quorle."),
            url, QStringLiteral("Later")};
}

UpdateAlertContent updateFailedAlert(const QString& message) {
    return {QStringLiteral("Update Check Failed"), message, std::nullopt, QStringLiteral("OK")};
}

UpdateAlertContent upToDateAlert() {
    return {QStringLiteral("Up to Date"),
            QStringLiteral("You are running the latest version of Tarnwick."), std::nullopt,
            QStringLiteral("OK")};
}

UpdateAlertContent noOutcomeAlert() {
    return {QStringLiteral("Updates"), QString(), std::nullopt, std::nullopt};
}

} // namespace tarnwick::ui
