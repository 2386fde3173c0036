#include "app/AppPersistence.h"

#include "app/SettingsStore.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace tarnwick {

namespace {

const QString selectedMachineKey = QStringLiteral("selectedMachine");
const QString recentFilesKey = QStringLiteral("recentFiles");
const QString uploadsKey = QStringLiteral("uploads");

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

} // namespace

AppPersistence::AppPersistence(std::unique_ptr<QSettings> store)
    : m_store(store ? std::move(store) : openStandardStore()) {}

std::optional<Machine> AppPersistence::selectedMachine() const {
    const auto document = decode(selectedMachineKey);
    return document ? Machine::fromJson(*document) : std::nullopt;
}

void AppPersistence::setSelectedMachine(const std::optional<Machine>& machine) {
    encode(machine ? std::optional<QJsonValue>(machine->toJson()) : std::nullopt,
           selectedMachineKey);
}

QList<JobFile> AppPersistence::recentFiles() const {
    return listFromJson<JobFile>(decode(recentFilesKey)).value_or(QList<JobFile>());
}

void AppPersistence::setRecentFiles(const QList<JobFile>& files) {
    encode(listToJson(files), recentFilesKey);
}

QList<UploadRecord> AppPersistence::uploadRecords() const {
    return listFromJson<UploadRecord>(decode(uploadsKey)).value_or(QList<UploadRecord>());
}

std::optional<QList<UploadRecord>> AppPersistence::readUploadRecords() const {
    m_store->sync();
    if (m_store->status() != QSettings::NoError)
        return std::nullopt;
    if (!m_store->contains(uploadsKey))
        return QList<UploadRecord>();
    return listFromJson<UploadRecord>(decode(uploadsKey));
}

std::optional<Error> AppPersistence::recordUpload(const UploadRecord& record) {
    QList<UploadRecord> records = uploadRecords();
    records.prepend(record);
    if (records.size() > maximumUploadRecords)
        records.resize(maximumUploadRecords);
    encode(listToJson(records), uploadsKey);
    return std::nullopt;
}

std::optional<QJsonValue> AppPersistence::decode(const QString& key) const {
    // Another process (the app or the command-line tool) may have written since the last read.
    m_store->sync();
    const QVariant stored = m_store->value(key);
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

void AppPersistence::encode(const std::optional<QJsonValue>& value, const QString& key) {
    if (!value) {
        m_store->remove(key);
    } else {
        const QJsonDocument document =
            value->isArray() ? QJsonDocument(value->toArray()) : QJsonDocument(value->toObject());
        m_store->setValue(key, document.toJson(QJsonDocument::Compact));
    }
    m_store->sync();
}

} // namespace tarnwick
