#include "app/SettingsStore.h"

#include "BuildConfig.h"

#include <QCoreApplication>
#include <QDir>

namespace tarnwick {

namespace settings {

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
        return std::make_unique<QSettings>(file, QSettings::IniFormat);
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
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
