#include "app/JobFile.h"

#include "app/JsonFields.h"
#include "app/StoredDate.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHashFunctions>

namespace tarnwick {

QString JobFile::fileName() const {
    return url.fileName();
}

const QStringList& JobFile::acceptedExtensions() {
    static const QStringList extensions{QStringLiteral("nc"), QStringLiteral("cnc"),
                                        QStringLiteral("gcode")};
    return extensions;
}

Result<JobFile> JobFile::fromUrl(const QUrl& url) {
    const QString path = url.toLocalFile();
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists()) {
        QFile file(path);
        QString reason =
            QCoreApplication::translate("tarnwick::JobFile", "No such file or directory");
        if (!path.isEmpty() && !file.open(QIODevice::ReadOnly))
            reason = file.errorString();
        return PlatformError{
            PlatformError::Domain::File, int(QFileDevice::OpenError),
            QCoreApplication::translate("tarnwick::JobFile", "“%1” could not be opened: %2.")
                .arg(url.fileName().isEmpty() ? url.toDisplayString() : url.fileName(), reason)};
    }
    if (!info.isFile())
        return JobFileError::notARegularFile();

    const QString extension = info.fileName().contains(QLatin1Char('.'))
                                  ? info.fileName().section(QLatin1Char('.'), -1).toLower()
                                  : QString();
    if (!acceptedExtensions().contains(extension))
        return JobFileError::unsupportedExtension(extension);

    std::optional<QDateTime> modified;
    if (const QDateTime date = info.lastModified().toUTC(); date.isValid())
        modified = date;
    return JobFile{url, info.size(), modified};
}

QJsonObject JobFile::toJson() const {
    QJsonObject object{
        {QLatin1String("url"), url.toString(QUrl::FullyEncoded)},
        {QLatin1String("size"), size},
    };
    if (modifiedAt)
        object.insert(QLatin1String("modifiedAt"), toStoredDate(*modifiedAt));
    return object;
}

std::optional<JobFile> JobFile::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const auto urlText = json::string(object, QLatin1String("url"));
    const auto size = json::integer(object, QLatin1String("size"));
    if (!urlText || !size)
        return std::nullopt;
    const QUrl url(*urlText, QUrl::StrictMode);
    if (!url.isValid() || url.isRelative())
        return std::nullopt;

    std::optional<QDateTime> modified;
    if (object.contains(QLatin1String("modifiedAt"))) {
        modified = fromStoredDate(object.value(QLatin1String("modifiedAt")));
        if (!modified)
            return std::nullopt;
    }
    return JobFile{url, *size, modified};
}

size_t qHash(const JobFile& file, size_t seed) {
    return qHashMulti(seed, file.url, file.size, file.modifiedAt.has_value(),
                      file.modifiedAt.value_or(QDateTime()));
}

} // namespace tarnwick
