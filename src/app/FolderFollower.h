#pragma once

#include "app/FolderWatch.h"
#include "app/JobFile.h"

#include <QObject>
#include <QPointer>

#include <optional>

namespace tarnwick {

class AppPersistence;

// The folder the window follows: each job file that arrives in it complete, new or changed, is
// offered as the chosen job file. Nothing is ever sent from here. The folder is remembered across
// launches.
class FolderFollower : public QObject {
    Q_OBJECT

public:
    explicit FolderFollower(AppPersistence& persistence, QObject* parent = nullptr);

    // Empty while no folder is followed.
    QString folder() const;
    // The last job file that arrived, while one did.
    const std::optional<JobFile>& lastArrival() const { return m_lastArrival; }
    bool isFolderMissing() const { return m_folderMissing; }

    // Follows the remembered folder, if any. Files already there when it starts are not
    // arrivals.
    void restore();
    void follow(const QString& folder);
    void stop();

Q_SIGNALS:
    void changed();
    void arrived(const tarnwick::JobFile& file);

private:
    void watch(const QString& folder);
    void fileReady(const QString& path);

    AppPersistence& m_persistence;
    QPointer<FolderWatch> m_watch;
    std::optional<JobFile> m_lastArrival;
    bool m_folderMissing = false;
};

} // namespace tarnwick
