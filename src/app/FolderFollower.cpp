#include "app/FolderFollower.h"

#include "app/AppPersistence.h"

#include <QUrl>

namespace tarnwick {

FolderFollower::FolderFollower(AppPersistence& persistence, QObject* parent)
    : QObject(parent)
    , m_persistence(persistence) {}

QString FolderFollower::folder() const {
    return m_watch ? m_watch->folder() : QString();
}

void FolderFollower::restore() {
    const QString stored = m_persistence.followedFolder();
    if (!stored.isEmpty())
        watch(stored);
}

void FolderFollower::follow(const QString& folder) {
    m_persistence.setFollowedFolder(folder);
    watch(folder);
}

void FolderFollower::stop() {
    m_persistence.setFollowedFolder({});
    delete m_watch;
    m_lastArrival.reset();
    m_folderMissing = false;
    Q_EMIT changed();
}

void FolderFollower::watch(const QString& folder) {
    delete m_watch;
    m_lastArrival.reset();
    m_folderMissing = false;
    m_watch = new FolderWatch(folder, this);
    connect(m_watch, &FolderWatch::fileReady, this, &FolderFollower::fileReady);
    connect(m_watch, &FolderWatch::folderMissing, this, [this] {
        m_folderMissing = true;
        Q_EMIT changed();
    });
    connect(m_watch, &FolderWatch::folderBack, this, [this] {
        m_folderMissing = false;
        Q_EMIT changed();
    });
    m_watch->start(FolderWatch::ExistingFiles::AreKnown);
    Q_EMIT changed();
}

void FolderFollower::fileReady(const QString& path) {
    // A file that went between its last look and now is no arrival.
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(path));
    if (!file)
        return;
    m_lastArrival = file.value();
    Q_EMIT changed();
    Q_EMIT arrived(file.value());
}

} // namespace tarnwick
