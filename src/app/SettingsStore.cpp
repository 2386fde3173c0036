#include "app/SettingsStore.h"

#include "BuildConfig.h"
#include "app/IniText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace tarnwick {

namespace settings {

namespace {

bool isReplaceableFile(const QString& path) {
    const QFileInfo target(path);
    return !target.exists() || target.isFile();
}

bool isReadableFile(const QString& path) {
    QFile file(path);
    return !file.exists() || (file.open(QIODevice::ReadOnly) && parseIniText(file.readAll()));
}

QJsonObject storedLimits(QSettings& store) {
    // The app in another window may have written since the last read.
    store.sync();
    return QJsonDocument::fromJson(store.value(machineLimitsKey).toByteArray()).object();
}

bool readStoreFile(QIODevice& device, QSettings::SettingsMap& values) {
    std::optional<QSettings::SettingsMap> read = parseIniText(device.readAll());
    if (read)
        values = std::move(*read);
    return read.has_value();
}

// QSettings renames its temporary file over the store even when the last bytes could not be
// written (a full disk), so the write proves itself here: false leaves the store as it was.
bool writeStoreFile(QIODevice& device, const QSettings::SettingsMap& values) {
    auto* file = qobject_cast<QFileDevice*>(&device);
    if (!file || !isReplaceableFile(file->fileName()))
        return false;
    // A store that cannot be read would be replaced by only what this handle knows of it.
    if (!isReadableFile(file->fileName()))
        return false;
    const QByteArray text = iniText(values);
    if (device.write(text) != text.size())
        return false;
    while (file->bytesToWrite() > 0) {
        if (!file->flush())
            return false;
    }
    return file->error() == QFileDevice::NoError;
}

} // namespace

QSettings::Format fileFormat() {
    // "conf" keeps the Linux store where QSettings' own format kept it.
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("conf"), readStoreFile, writeStoreFile);
    return format;
}

std::unique_ptr<QSettings> openStoreFile(const QString& path) {
    return std::make_unique<QSettings>(path, fileFormat());
}

bool isReplaceable(const QSettings& store) {
    return store.format() != fileFormat() || isReplaceableFile(store.fileName());
}

bool isReadable(const QSettings& store) {
    return store.format() != fileFormat() || isReadableFile(store.fileName());
}

bool automaticUpdateChecks(const QSettings& store) {
    const QVariant value = store.value(automaticUpdateChecksKey);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    // Native stores keep Booleans as such; an INI file gives back the word it wrote.
    return value.typeId() != QMetaType::QString || value.toString() != QLatin1String("false");
}

void setAutomaticUpdateChecks(QSettings& store, bool enabled) {
    store.setValue(automaticUpdateChecksKey, enabled);
    store.sync();
}

std::optional<QString> installIdentifier(const QSettings& store) {
    const QVariant stored = store.value(installIdentifierKey);
    if (stored.typeId() != QMetaType::QString)
        return std::nullopt;
    return stored.toString();
}

void setInstallIdentifier(QSettings& store, const QString& identifier) {
    store.setValue(installIdentifierKey, identifier);
    store.sync();
}

QByteArray windowGeometry(const QSettings& store) {
    return store.value(windowGeometryKey).toByteArray();
}

void setWindowGeometry(QSettings& store, const QByteArray& geometry) {
    store.setValue(windowGeometryKey, geometry);
}

QJsonObject machineLimits(QSettings& store, const QString& machineId) {
    return storedLimits(store).value(machineId).toObject();
}

void setMachineLimits(QSettings& store, const QString& machineId, const QJsonObject& limits) {
    QJsonObject all = storedLimits(store);
    if (limits.isEmpty())
        all.remove(machineId);
    else
        all.insert(machineId, limits);
    if (all.isEmpty())
        store.remove(machineLimitsKey);
    else
        store.setValue(machineLimitsKey, QJsonDocument(all).toJson(QJsonDocument::Compact));
    store.sync();
}

QString writeLockPath(const QSettings& store) {
    // QSettings itself locks "<file>.lock" while it syncs, so ours needs another name.
    const QString suffix = QStringLiteral(".write-lock");
#ifdef Q_OS_WIN
    // The registry is no file: the lock lives in the user's own temporary folder instead.
    if (store.format() == QSettings::NativeFormat)
        return QDir::temp().filePath(QLatin1String(build::organizationName) + QLatin1Char('-') +
                                     QLatin1String(build::applicationName) + suffix);
#endif
    return store.fileName() + suffix;
}

} // namespace settings

std::unique_ptr<QSettings> openStandardStore() {
    const QString file = qEnvironmentVariable(settings::storeFileVariable);
    if (!file.isEmpty())
        return settings::openStoreFile(file);
#if defined(Q_OS_MACOS) || defined(Q_OS_WIN)
    const QSettings::Format format = QSettings::NativeFormat;
#else
    const QSettings::Format format = settings::fileFormat();
#endif
    return std::make_unique<QSettings>(format, QSettings::UserScope,
                                       QLatin1String(build::organizationName),
                                       QLatin1String(build::applicationName));
}

void setApplicationIdentity() {
    QCoreApplication::setOrganizationName(QLatin1String(build::organizationName));
    QCoreApplication::setOrganizationDomain(QLatin1String(build::updateHost));
    QCoreApplication::setApplicationName(QLatin1String(build::applicationName));
    QCoreApplication::setApplicationVersion(QLatin1String(build::version));
}

} // namespace tarnwick
