#include "ui/UpdateAlert.h"

#include "BuildConfig.h"
#include "ui/AlertText.h"
#include "ui/Retranslation.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>

namespace tarnwick::ui {

UpdateAlertContent updateAlertContent(const std::optional<UpdateChecker::Outcome>& outcome,
                                      const QString& updateHost) {
    if (!outcome)
        return noOutcomeAlert();
    return std::visit(
        [&](const auto& kind) -> UpdateAlertContent {
            using Kind = std::decay_t<decltype(kind)>;
            if constexpr (std::is_same_v<Kind, UpdateChecker::UpdateAvailable>)
                return updateAvailableAlert(kind.version.description(), kind.url, updateHost);
            else if constexpr (std::is_same_v<Kind, UpdateChecker::Failed>)
                return updateFailedAlert(kind.message);
            else
                return upToDateAlert();
        },
        outcome->kind);
}

UpdateAlert::UpdateAlert(UpdateChecker& checker, QWidget* window)
    : QObject(window)
    , m_checker(checker)
    , m_window(window) {
    connect(&m_checker, &UpdateChecker::outcomeChanged, this, &UpdateAlert::showOutcome);
}

void UpdateAlert::showOutcome() {
    if (QMessageBox* previous = m_alert) {
        // A new result replaces the one on screen; the old alert must not clear it.
        m_alert = nullptr;
        previous->disconnect(this);
        previous->close();
    }
    if (!m_checker.outcome())
        return;

    const QString host = QString::fromUtf8(build::updateHost);
    const UpdateAlertContent content = updateAlertContent(m_checker.outcome(), host);
    auto* alert = new QMessageBox(m_window);
    alert->setObjectName(QStringLiteral("updateAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    QPushButton* download = nullptr;
    if (content.downloadUrl) {
        download = alert->addButton(QString(), QMessageBox::AcceptRole);
        download->setObjectName(QStringLiteral("downloadButton"));
    }
    QPushButton* dismiss = alert->addButton(QString(), QMessageBox::RejectRole);
    alert->setDefaultButton(download ? download : dismiss);
    alert->setEscapeButton(dismiss);
    keepTranslated(alert, [this, alert, download, dismiss, host] {
        const UpdateAlertContent now = updateAlertContent(m_checker.outcome(), host);
        setAlertText(alert, now.title, now.message, now.icon);
        if (download)
            download->setText(tr("Download"));
        dismiss->setText(now.dismissButton.value_or(tr("OK")));
    });
    connect(alert, &QMessageBox::finished, this, [this, alert, download, content] {
        m_alert = nullptr;
        if (download && alert->clickedButton() == download)
            QDesktopServices::openUrl(*content.downloadUrl);
        m_checker.clearOutcome();
    });
    m_alert = alert;
    alert->open();
}

} // namespace tarnwick::ui
