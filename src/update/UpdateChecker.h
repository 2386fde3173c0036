#pragma once

#include "update/AppVersion.h"
#include "update/UpdateFeed.h"

#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QTimer>
#include <QUrl>
#include <QUuid>

#include <chrono>
#include <memory>
#include <optional>
#include <variant>

class QNetworkAccessManager;
class QNetworkReply;

namespace tarnwick {

// Asks the update feed whether a newer version exists and keeps the latest result for the user
// to see. Lives on the main thread; at most one check runs at a time.
class UpdateChecker : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool checking READ isChecking NOTIFY isCheckingChanged)

public:
    struct UpdateAvailable {
        AppVersion version;
        QUrl url;
        friend bool operator==(const UpdateAvailable&, const UpdateAvailable&) = default;
    };
    struct Failed {
        QString message;
        friend bool operator==(const Failed&, const Failed&) = default;
    };
    struct UpToDate {
        friend bool operator==(const UpToDate&, const UpToDate&) = default;
    };
    using Kind = std::variant<UpdateAvailable, Failed, UpToDate>;

    // Every outcome has its own id, so two equal results are still two presentations.
    struct Outcome {
        QUuid id;
        Kind kind;
        friend bool operator==(const Outcome&, const Outcome&) = default;
    };

    // The whole check, redirects and a slow body included, ends within this time.
    static constexpr std::chrono::milliseconds checkDeadline{60'000};
    // A body this large is no version feed; reading stops there instead of filling memory.
    static constexpr qint64 maximumFeedSize = 1024 * 1024;

    // `store` holds the install identifier and the automatic-check switch; the shared standard
    // store when none is given. `currentVersion` is the running version's text; nothing, or a
    // text that is no version, means the running version is unknown. Without `network` the
    // checker makes its own access manager.
    UpdateChecker(std::unique_ptr<QSettings> store, const std::optional<QString>& currentVersion,
                  QNetworkAccessManager* network = nullptr, QUrl feed = UpdateFeed::feedURL(),
                  QObject* parent = nullptr);
    ~UpdateChecker() override;

    const std::optional<Outcome>& outcome() const { return m_outcome; }
    // Dismissing the result the user has seen.
    void clearOutcome();

    bool isChecking() const { return m_checking; }

    // Tests shorten the deadline; a check already running keeps its own.
    void setDeadline(std::chrono::milliseconds deadline) { m_deadline = deadline; }

    const std::optional<AppVersion>& currentVersion() const { return m_currentVersion; }

    // Made and stored on first use; a stored text is returned as it is.
    QString installID();

    // False only when the store holds the Boolean false.
    bool automaticChecksEnabled() const;

    // `feed` with the query uuid=installID and, when the running version is known, v=version.
    static QUrl feedURL(const QUrl& feed, const QString& installID,
                        const std::optional<AppVersion>& currentVersion);

    // Asks the feed once; a call while a check runs does nothing. A newer version is always
    // reported; failures and "up to date" only when `reportEveryOutcome` is true.
    void check(bool reportEveryOutcome);

Q_SIGNALS:
    void outcomeChanged();
    void isCheckingChanged(bool checking);

private:
    void finish(QNetworkReply* reply, bool reportEveryOutcome);
    void report(Kind kind);
    QString transportFailureMessage(const QNetworkReply& reply) const;
    QString unreadableFeedMessage() const;

    std::unique_ptr<QSettings> m_store;
    std::optional<AppVersion> m_currentVersion;
    QNetworkAccessManager* m_network;
    QUrl m_feed;
    bool m_checking = false;
    bool m_feedTooLarge = false;
    bool m_timedOut = false;
    std::chrono::milliseconds m_deadline = checkDeadline;
    QTimer* m_deadlineTimer;
    QPointer<QNetworkReply> m_reply;
    std::optional<Outcome> m_outcome;
};

} // namespace tarnwick
