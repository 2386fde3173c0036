#include "update/UpdateFeed.h"

#include "BuildConfig.h"
#include "app/StrictUtf8.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tarnwick {

namespace {

// The JSON object form as a typed decoder sees it: "version" is a required text, "url" an
// optional text (null counts as absent). Any other shape means the body is not of this form.
struct JsonForm {
    QString version;
    std::optional<QString> url;
};

std::optional<JsonForm> decodeJsonForm(const QByteArray& body) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    const QJsonValue version = object.value(QLatin1String("version"));
    if (!version.isString())
        return std::nullopt;
    const QJsonValue url = object.value(QLatin1String("url"));
    if (url.isUndefined() || url.isNull())
        return JsonForm{version.toString(), std::nullopt};
    if (!url.isString())
        return std::nullopt;
    return JsonForm{version.toString(), url.toString()};
}

std::optional<QUrl> absoluteURL(const std::optional<QString>& text) {
    if (!text || text->isEmpty())
        return std::nullopt;
    const QUrl url(*text, QUrl::StrictMode);
    if (!url.isValid() || url.isRelative())
        return std::nullopt;
    return url;
}

QUrl updateHostURL(const char* path) {
    return QUrl(QLatin1String("https://") + QLatin1String(build::updateHost) + QLatin1String(path));
}

} // namespace

QUrl UpdateFeed::feedURL() {
    return updateHostURL("/quorle/version.json");
}

QUrl UpdateFeed::fallbackDownloadURL() {
    return updateHostURL("/quorle/");
}

std::optional<UpdateFeed> UpdateFeed::fromData(const QByteArray& body) {
    if (const std::optional<JsonForm> json = decodeJsonForm(body)) {
        // A JSON feed with a bad version is no feed; it is not read again as text.
        const std::optional<AppVersion> version = AppVersion::fromText(json->version);
        if (!version)
            return std::nullopt;
        return UpdateFeed{*version, absoluteURL(json->url).value_or(fallbackDownloadURL())};
    }
    const std::optional<QString> text = strictUtf8(body);
    if (!text)
        return std::nullopt;
    const std::optional<AppVersion> version = AppVersion::fromText(*text);
    if (!version)
        return std::nullopt;
    return UpdateFeed{*version, fallbackDownloadURL()};
}

} // namespace tarnwick
