#include "app/SentDigests.h"

#include "app/SettingsStore.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>

namespace tarnwick {

namespace {

constexpr int lockWaitMs = 10'000;

QJsonObject stored(const QSettings& store) {
    return QJsonDocument::fromJson(store.value(settings::sentDigestsKey).toByteArray()).object();
}

Error storeError(const QString& message) {
    return PlatformError{PlatformError::Domain::File, int(QSettings::AccessError), message};
}

} // namespace

SentDigests::SentDigests(StoreOpener open)
    : m_open(std::move(open)) {}

QByteArray SentDigests::digest(const QString& machineId, const QString& path) const {
    const std::unique_ptr<QSettings> store = m_open();
    return QByteArray::fromHex(
        stored(*store).value(machineId).toObject().value(path).toString().toLatin1());
}

std::optional<Error> SentDigests::remember(const QString& machineId, const QString& path,
                                           const QByteArray& md5) {
    const std::unique_ptr<QSettings> store = m_open();
    if (!settings::isReplaceable(*store) || !settings::isReadable(*store))
        return storeError(
            QCoreApplication::translate("SentDigests", "The settings store %1 cannot be written.")
                .arg(store->fileName()));
    const QString lockPath = settings::writeLockPath(*store);
    QDir().mkpath(QFileInfo(lockPath).absolutePath());
    QLockFile lock(lockPath);
    if (!lock.tryLock(lockWaitMs))
        return storeError(QCoreApplication::translate(
                              "SentDigests", "The settings store %1 is locked by another program.")
                              .arg(store->fileName()));
    store->sync();
    QJsonObject machines = stored(*store);
    QJsonObject paths = machines.value(machineId).toObject();
    paths.insert(path, QString::fromLatin1(md5.toHex()));
    machines.insert(machineId, paths);
    store->setValue(settings::sentDigestsKey,
                    QJsonDocument(machines).toJson(QJsonDocument::Compact));
    store->sync();
    if (store->status() != QSettings::NoError)
        return storeError(
            QCoreApplication::translate("SentDigests", "The settings store %1 could not be saved.")
                .arg(store->fileName()));
    return std::nullopt;
}

std::optional<QByteArray> SentDigests::fileDigest(const QString& path) {
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return std::nullopt;
    return hash.result();
}

} // namespace tarnwick
