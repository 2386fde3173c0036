#include "update/UpdateChecker.h"

#include "app/SettingsStore.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrlQuery>

namespace tarnwick {

UpdateChecker::UpdateChecker(std::unique_ptr<QSettings> store,
                             const std::optional<QString>& currentVersion,
                             QNetworkAccessManager* network, QUrl feed, QObject* parent)
    : QObject(parent)
    , m_store(store ? std::move(store) : openStandardStore())
    , m_currentVersion(currentVersion ? AppVersion::fromText(*currentVersion) : std::nullopt)
    , m_network(network ? network : new QNetworkAccessManager(this))
    , m_feed(std::move(feed))
    , m_deadlineTimer(new QTimer(this)) {
    // A request's transfer time-out only measures silence: a server that redirects, sends its
    // headers slowly or drips its body would keep the check alive without end. So the whole
    // check has a deadline of its own.
    m_deadlineTimer->setSingleShot(true);
    m_deadlineTimer->setTimerType(Qt::PreciseTimer);
    connect(m_deadlineTimer, &QTimer::timeout, this, [this] {
        if (!m_reply)
            return;
        m_timedOut = true;
        m_reply->abort();
    });
}

UpdateChecker::~UpdateChecker() {
    // A check still running ends silently with its owner.
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
}

void UpdateChecker::clearOutcome() {
    if (!m_outcome)
        return;
    m_outcome.reset();
    Q_EMIT outcomeChanged();
}

QString UpdateChecker::installID() {
    if (const std::optional<QString> stored = settings::installIdentifier(*m_store))
        return *stored;
    const QString created = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    settings::setInstallIdentifier(*m_store, created);
    return created;
}

bool UpdateChecker::automaticChecksEnabled() const {
    return settings::automaticUpdateChecks(*m_store);
}

QUrl UpdateChecker::feedURL(const QUrl& feed, const QString& installID,
                            const std::optional<AppVersion>& currentVersion) {
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("uuid"), installID);
    if (currentVersion)
        query.addQueryItem(QStringLiteral("v"), currentVersion->description());
    QUrl url = feed;
    url.setQuery(query);
    return url;
}

void UpdateChecker::check(bool reportEveryOutcome) {
    if (m_checking)
        return;
    m_checking = true;
    m_feedTooLarge = false;
    m_timedOut = false;
    Q_EMIT isCheckingChanged(true);

    QNetworkRequest request(feedURL(m_feed, installID(), m_currentVersion));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    m_reply = m_network->get(request);
    m_deadlineTimer->start(m_deadline);
    QNetworkReply* reply = m_reply;
    connect(reply, &QNetworkReply::downloadProgress, this, [this, reply](qint64 received) {
        if (received > maximumFeedSize) {
            m_feedTooLarge = true;
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, reportEveryOutcome] { finish(reply, reportEveryOutcome); });
}

void UpdateChecker::finish(QNetworkReply* reply, bool reportEveryOutcome) {
    reply->deleteLater();
    m_reply = nullptr;
    m_deadlineTimer->stop();

    // Qt reports an HTTP status other than 2xx as an error too: an error is the transport's own
    // only when no status arrived, or when the body of a 200 answer broke off.
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    // A time-out after a redirect still carries the redirect's status.
    const bool transportFailed =
        m_timedOut || (reply->error() != QNetworkReply::NoError && !m_feedTooLarge &&
                       (!status.isValid() || status.toInt() == 200));
    std::optional<UpdateFeed> feed;
    if (!transportFailed && !m_feedTooLarge && status.isValid() && status.toInt() == 200)
        feed = UpdateFeed::fromData(reply->readAll());

    if (transportFailed) {
        if (reportEveryOutcome)
            report(Failed{transportFailureMessage(*reply)});
    } else if (!feed) {
        if (reportEveryOutcome)
            report(Failed{unreadableFeedMessage()});
    } else if (m_currentVersion && *m_currentVersion < feed->version) {
        report(UpdateAvailable{feed->version, feed->downloadURL});
    } else if (reportEveryOutcome) {
        report(UpToDate{});
    }

    m_checking = false;
    Q_EMIT isCheckingChanged(false);
}

void UpdateChecker::report(Kind kind) {
    m_outcome = Outcome{QUuid::createUuid(), std::move(kind)};
    Q_EMIT outcomeChanged();
}

QString UpdateChecker::transportFailureMessage(const QNetworkReply& reply) const {
    if (m_timedOut) {
        const auto seconds = std::chrono::ceil<std::chrono::seconds>(m_deadline).count();
        return tr("The update server did not answer within %1 seconds.").arg(seconds);
    }
    // Qt gives some failures without their reason; "Decompression failed: " is one.
    const QString message = reply.errorString().trimmed();
    if (message.endsWith(u':'))
        return tr("%1 the compressed answer is damaged or cut short.").arg(message);
    return message;
}

QString UpdateChecker::unreadableFeedMessage() const {
    const QUrl withoutQuery = m_feed.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    return tr("The update feed at %1 could not be read.")
        .arg(withoutQuery.toString(QUrl::FullyEncoded));
}

} // namespace tarnwick
