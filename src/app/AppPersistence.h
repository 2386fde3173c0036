#pragma once

#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/UploadRecord.h"

#include <QJsonValue>
#include <QList>
#include <QSettings>

#include <memory>
#include <optional>

namespace tarnwick {

// What the program remembers between launches, each kept as a compact JSON document.
// Every failure is silent: an unreadable document reads as nothing, and a value that cannot be
// written removes its key.
class AppPersistence {
public:
    static constexpr int maximumUploadRecords = 50;

    // Over the shared standard store when none is given.
    explicit AppPersistence(std::unique_ptr<QSettings> store = nullptr);

    std::optional<Machine> selectedMachine() const;
    void setSelectedMachine(const std::optional<Machine>& machine);

    QList<JobFile> recentFiles() const;
    void setRecentFiles(const QList<JobFile>& files);

    // Newest first.
    QList<UploadRecord> uploadRecords() const;
    // The same, or none when the store or its history cannot be read (an empty history reads).
    std::optional<QList<UploadRecord>> readUploadRecords() const;
    // The error when the history could not be saved; what was stored before stays.
    std::optional<Error> recordUpload(const UploadRecord& record);

private:
    std::optional<QJsonValue> decode(const QString& key) const;
    void encode(const std::optional<QJsonValue>& value, const QString& key);

    std::unique_ptr<QSettings> m_store;
};

} // namespace tarnwick
