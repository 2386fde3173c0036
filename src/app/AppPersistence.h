#pragma once

#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/UploadRecord.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QSettings>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// What the program remembers between launches, each kept as a compact JSON document.
// An unreadable document reads as nothing, and a value that cannot be written removes its key.
// The upload history is shared with other processes: adding to it is done under a lock, and a
// failure to do so is reported, because a lost record means a missing duplicate warning.
class AppPersistence {
public:
    static constexpr int maximumUploadRecords = 50;
    // Writers queue for a few milliseconds each; a lock held this long belongs to a program that
    // hangs.
    static constexpr std::chrono::milliseconds defaultLockWait{10'000};

    // Over the shared standard store when none is given.
    explicit AppPersistence(std::unique_ptr<QSettings> store = nullptr);

    std::optional<Machine> selectedMachine() const;
    void setSelectedMachine(const std::optional<Machine>& machine);

    QList<JobFile> recentFiles() const;
    void setRecentFiles(const QList<JobFile>& files);

    // A machine's limits as the fit check reads them; empty when none were given.
    QJsonObject machineLimits(const QString& machineId) const;
    // Under the store's write lock, since all machines' limits are one document; a PlatformError
    // of the file domain when it could not be taken, and then nothing is written.
    std::optional<Error> setMachineLimits(const QString& machineId, const QJsonObject& limits);
    // The folder whose new job files the window offers; empty when none is followed.
    QString followedFolder() const;
    void setFollowedFolder(const QString& folder);

    // Newest first.
    QList<UploadRecord> uploadRecords() const;
    // The same, or none when the store or its history cannot be read (an empty history reads).
    std::optional<QList<UploadRecord>> readUploadRecords() const;
    // A PlatformError of the file domain saying why the history could not be saved; what was
    // stored before stays.
    std::optional<Error> recordUpload(const UploadRecord& record);

    // How long recordUpload() waits for another process to finish its own write.
    void setLockWait(std::chrono::milliseconds wait) { m_lockWait = wait; }

    // Makes another store over the same place with the same lock wait, on the thread that calls
    // it: a QSettings handle is never shared between threads.
    using Opener = std::function<std::unique_ptr<AppPersistence>()>;
    Opener opener() const;

    // The one thread on which this process's locked writes run, in the order they were asked
    // for: a lock that another program holds for seconds holds up that thread, never the main
    // thread, nor the pool that hashes job files.
    static QThreadPool& writers();

private:
    std::unique_ptr<QSettings> m_store;
    std::chrono::milliseconds m_lockWait = defaultLockWait;
};

} // namespace tarnwick
