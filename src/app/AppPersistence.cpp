#include "app/AppPersistence.h"

#include "app/SettingsStore.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLockFile>
#include <QThread>

namespace tarnwick {

namespace {

using settings::recentFilesKey;
using settings::selectedMachineKey;
using settings::uploadsKey;

PlatformError fileError(int code, const QString& message) {
    return PlatformError{PlatformError::Domain::File, code, message};
}

Error lockError(const QLockFile& lock, const QString& lockPath, const QString& storePath) {
    switch (lock.error()) {
    case QLockFile::LockFailedError:
        return fileError(int(lock.error()),
                         QCoreApplication::translate("AppPersistence",
                                                     "The settings store %1 stayed locked by "
                                                     "another program.")
                             .arg(storePath));
    case QLockFile::PermissionError:
        return fileError(
            int(lock.error()),
            QCoreApplication::translate("AppPersistence",
                                        "The lock file %1 could not be created: permission denied.")
                .arg(lockPath));
    case QLockFile::NoError:
    case QLockFile::UnknownError:
        break;
    }
    return fileError(
        int(lock.error()),
        QCoreApplication::translate("AppPersistence", "The lock file %1 could not be created.")
            .arg(lockPath));
}

// An array document reads as a list only when every element reads.
template <typename T>
std::optional<QList<T>> listFromJson(const std::optional<QJsonValue>& value) {
    if (!value || !value->isArray())
        return std::nullopt;
    QList<T> items;
    for (const QJsonValue& element : value->toArray()) {
        auto item = T::fromJson(element);
        if (!item)
            return std::nullopt;
        items.append(std::move(*item));
    }
    return items;
}

template <typename T>
QJsonValue listToJson(const QList<T>& items) {
    QJsonArray array;
    for (const T& item : items)
        array.append(item.toJson());
    return array;
}

// QLockFile's own wait doubles its pause up to seconds, so writers queued behind each other would
// give up while the lock stands free; short even pauses keep the queue moving.
bool lockWithin(QLockFile& lock, std::chrono::milliseconds wait) {
    const QDeadlineTimer deadline(wait);
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || deadline.hasExpired())
            return false;
        QThread::msleep(5);
    }
    return true;
}

// QSettings keeps the first error it meets for the life of a handle, so each write that reports
// errors takes a handle of its own on the same store.
std::unique_ptr<QSettings> reopened(const QSettings& store) {
    if (store.format() == settings::fileFormat())
        return settings::openStoreFile(store.fileName());
    return openStandardStore();
}

std::optional<Error> statusError(const QSettings& store) {
    switch (settings::isReadable(store) ? store.status() : QSettings::FormatError) {
    case QSettings::NoError:
        return std::nullopt;
    case QSettings::AccessError:
        return fileError(int(QSettings::AccessError),
                         QCoreApplication::translate("AppPersistence",
                                                     "The settings store %1 could not be read "
                                                     "or written.")
                             .arg(store.fileName()));
    case QSettings::FormatError:
        break;
    }
    return fileError(int(QSettings::FormatError),
                     QCoreApplication::translate("AppPersistence",
                                                 "The settings store %1 is not in a format "
                                                 "that can be read.")
                         .arg(store.fileName()));
}

std::optional<QJsonValue> decode(QSettings& store, QLatin1StringView key) {
    // Another process (the app or the command-line tool) may have written since the last read.
    store.sync();
    const QVariant stored = store.value(key);
    if (stored.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(stored.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError)
        return std::nullopt;
    if (document.isArray())
        return QJsonValue(document.array());
    return QJsonValue(document.object());
}

void encode(QSettings& store, const std::optional<QJsonValue>& value, QLatin1StringView key) {
    if (!value) {
        store.remove(key);
    } else {
        const QJsonDocument document =
            value->isArray() ? QJsonDocument(value->toArray()) : QJsonDocument(value->toObject());
        store.setValue(key, document.toJson(QJsonDocument::Compact));
    }
    store.sync();
}

} // namespace

AppPersistence::AppPersistence(std::unique_ptr<QSettings> store)
    : m_store(store ? std::move(store) : openStandardStore()) {}

std::optional<Machine> AppPersistence::selectedMachine() const {
    const auto document = decode(*m_store, selectedMachineKey);
    return document ? Machine::fromJson(*document) : std::nullopt;
}

void AppPersistence::setSelectedMachine(const std::optional<Machine>& machine) {
    encode(*m_store, machine ? std::optional<QJsonValue>(machine->toJson()) : std::nullopt,
           selectedMachineKey);
}

QString AppPersistence::followedFolder() const {
    return m_store->value(settings::followedFolderKey).toString();
}

void AppPersistence::setFollowedFolder(const QString& folder) {
    if (folder.isEmpty())
        m_store->remove(settings::followedFolderKey);
    else
        m_store->setValue(settings::followedFolderKey, folder);
}

QList<JobFile> AppPersistence::recentFiles() const {
    return listFromJson<JobFile>(decode(*m_store, recentFilesKey)).value_or(QList<JobFile>());
}

void AppPersistence::setRecentFiles(const QList<JobFile>& files) {
    encode(*m_store, listToJson(files), recentFilesKey);
}

QJsonObject AppPersistence::machineLimits(const QString& machineId) const {
    return settings::machineLimits(*m_store, machineId);
}

std::optional<Error> AppPersistence::setMachineLimits(const QString& machineId,
                                                      const QJsonObject& limits) {
    const QString lockPath = settings::writeLockPath(*m_store);
    QDir().mkpath(QFileInfo(lockPath).absolutePath());
    QLockFile lock(lockPath);
    if (!lockWithin(lock, m_lockWait))
        return lockError(lock, lockPath, m_store->fileName());
    settings::setMachineLimits(*m_store, machineId, limits);
    return statusError(*m_store);
}

QList<UploadRecord> AppPersistence::uploadRecords() const {
    return listFromJson<UploadRecord>(decode(*m_store, uploadsKey)).value_or(QList<UploadRecord>());
}

std::optional<QList<UploadRecord>> AppPersistence::readUploadRecords() const {
    const std::unique_ptr<QSettings> store = reopened(*m_store);
    store->sync();
    if (statusError(*store))
        return std::nullopt;
    if (!store->contains(uploadsKey))
        return QList<UploadRecord>();
    return listFromJson<UploadRecord>(decode(*store, uploadsKey));
}

QThreadPool& AppPersistence::writers() {
    struct SingleWriter : QThreadPool {
        SingleWriter() { setMaxThreadCount(1); }
    };
    static SingleWriter pool;
    return pool;
}

AppPersistence::Opener AppPersistence::opener() const {
    return [fileName = m_store->fileName(), format = m_store->format(), wait = m_lockWait] {
        auto store = std::make_unique<AppPersistence>(format == settings::fileFormat()
                                                          ? settings::openStoreFile(fileName)
                                                          : openStandardStore());
        store->setLockWait(wait);
        return store;
    };
}

std::optional<Error> AppPersistence::recordUpload(const UploadRecord& record) {
    const std::unique_ptr<QSettings> store = reopened(*m_store);
    if (!settings::isReplaceable(*store))
        return fileError(int(QSettings::AccessError),
                         QCoreApplication::translate("AppPersistence",
                                                     "The settings store %1 is not a regular "
                                                     "file, so it is left as it is.")
                             .arg(store->fileName()));
    const QString lockPath = settings::writeLockPath(*store);
    // Before the first write the store's folder may not exist yet.
    QDir().mkpath(QFileInfo(lockPath).absolutePath());
    QLockFile lock(lockPath);
    if (!lockWithin(lock, m_lockWait))
        return lockError(lock, lockPath, store->fileName());

    // Read inside the lock: another process may have added its record a moment ago. A store
    // that cannot be read is not written either, so that nothing in it is replaced.
    QList<UploadRecord> records =
        listFromJson<UploadRecord>(decode(*store, uploadsKey)).value_or(QList<UploadRecord>());
    if (std::optional<Error> error = statusError(*store))
        return error;
    records.prepend(record);
    if (records.size() > maximumUploadRecords)
        records.resize(maximumUploadRecords);
    encode(*store, listToJson(records), uploadsKey);
    return statusError(*store);
}

} // namespace tarnwick
