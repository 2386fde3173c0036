#include "update/UpdateChecker.h"

#include "BuildConfig.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrlQuery>

namespace tarnwick {

namespace {

const QString installIdentifierKey = QStringLiteral("installIdentifier");
const QString automaticChecksKey = QStringLiteral("automaticUpdateChecks");

std::unique_ptr<QSettings> standardStore() {
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QLatin1String(build::organizationName),
                                       QLatin1String(build::applicationName));
}

// Native stores keep Booleans as such; the INI store gives them back as the texts it wrote.
std::optional<bool> storedBoolean(const QVariant& value) {
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString();
        if (text == QLatin1String("true"))
            return true;
        if (text == QLatin1String("false"))
            return false;
    }
    return std::nullopt;
}

} // namespace

UpdateChecker::UpdateChecker(std::unique_ptr<QSettings> store,
                             const std::optional<QString>& currentVersion,
                             QNetworkAccessManager* network, QUrl feed, QObject* parent)
    : QObject(parent)
    , m_store(store ? std::move(store) : standardStore())
    , m_currentVersion(currentVersion ? AppVersion::fromText(*currentVersion) : std::nullopt)
    , m_network(network ? network : new QNetworkAccessManager(this))
    , m_feed(std::move(feed)) {}

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
    const QVariant stored = m_store->value(installIdentifierKey);
    if (stored.typeId() == QMetaType::QString)
        return stored.toString();
    const QString created = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    m_store->setValue(installIdentifierKey, created);
    m_store->sync();
    return created;
}

bool UpdateChecker::automaticChecksEnabled() const {
    return storedBoolean(m_store->value(automaticChecksKey)).value_or(true);
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
    Q_EMIT isCheckingChanged(true);

    QNetworkRequest request(feedURL(m_feed, installID(), m_currentVersion));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(requestTimeoutMilliseconds);
    m_reply = m_network->get(request);
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

    // Qt reports an HTTP status other than 2xx as an error too: an error is the transport's own
    // only when no status arrived, or when the body of a 200 answer broke off.
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const bool transportFailed = reply->error() != QNetworkReply::NoError && !m_feedTooLarge &&
                                 (!status.isValid() || status.toInt() == 200);
    std::optional<UpdateFeed> feed;
    if (!transportFailed && !m_feedTooLarge && status.isValid() && status.toInt() == 200)
        feed = UpdateFeed::fromData(reply->readAll());

    if (transportFailed) {
        if (reportEveryOutcome)
            report(Failed{reply->errorString()});
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

QString UpdateChecker::unreadableFeedMessage() const {
    const QUrl withoutQuery = m_feed.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    return tr("The update feed at %1 could not be read.")
        .arg(withoutQuery.toString(QUrl::FullyEncoded));
}

} // namespace tarnwick
