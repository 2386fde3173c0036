#pragma once

#include <QMessageBox>
#include <QString>
#include <QUrl>

#include <optional>

namespace tarnwick::ui {

// What the update alert says for one result of an update check.
struct UpdateAlertContent {
    QString title;
    QString message;
    // "Download" appears only when there is something to download.
    std::optional<QUrl> downloadUrl;
    // The button that dismisses the alert: "Later" beside "Download", else "OK"; none while
    // the alert closes without a result.
    std::optional<QString> dismissButton;
    QMessageBox::Icon icon;

    friend bool operator==(const UpdateAlertContent&, const UpdateAlertContent&) = default;
};

UpdateAlertContent updateAvailableAlert(const QString& version, const QUrl& url,
                                        const QString& updateHost);
UpdateAlertContent updateFailedAlert(const QString& message);
UpdateAlertContent upToDateAlert();
UpdateAlertContent noOutcomeAlert();

} // namespace tarnwick::ui
