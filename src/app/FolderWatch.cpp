#include "app/FolderWatch.h"

#include "app/JobFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

// Often enough that a settled file goes out soon after its two seconds.
constexpr std::chrono::milliseconds settleCheck{250};

bool opensForReading(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly);
}

} // namespace

FolderWatch::FolderWatch(QString folder, QObject* parent)
    : QObject(parent)
    , m_folder(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()))
    , m_watcher(this)
    , m_scan(this)
    , m_settle(this) {
    m_scan.setInterval(scanInterval);
    m_settle.setInterval(settleCheck);
    connect(&m_scan, &QTimer::timeout, this, &FolderWatch::look);
    connect(&m_settle, &QTimer::timeout, this, &FolderWatch::look);
    // A burst of events is one look: the look reads the whole folder.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_settle.isActive())
            m_settle.start();
    });
}

void FolderWatch::start(ExistingFiles existing) {
    m_existing = existing;
    m_scan.start();
    look();
}

bool FolderWatch::isSettling() const {
    return !m_looked || std::any_of(m_seen.cbegin(), m_seen.cend(),
                                    [](const Sighting& sighting) { return !sighting.reported; });
}

bool FolderWatch::isJobFileName(const QString& fileName) {
    if (fileName.startsWith(u'.') || fileName.endsWith(u'~'))
        return false;
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    return JobFile::acceptedExtensions().contains(suffix);
}

void FolderWatch::watchFolder() {
    if (!m_watcher.directories().contains(m_folder))
        m_watcher.addPath(m_folder);
}

FolderWatch::Listing FolderWatch::list(const QString& folder) {
    const QDir dir(folder);
    Listing listing{dir.exists(), {}};
    if (!listing.exists)
        return listing;
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Readable, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (isJobFileName(entry.fileName()))
            listing.entries.append({entry.absoluteFilePath(), entry.size(), entry.lastModified(),
                                    opensForReading(entry.absoluteFilePath())});
    }
    return listing;
}

void FolderWatch::look() {
    if (m_listing) {
        m_lookAgain = true;
        return;
    }
    m_listing = new QFutureWatcher<Listing>(this);
    connect(m_listing, &QFutureWatcherBase::finished, this, [this, listing = m_listing.data()] {
        listing->deleteLater();
        take(listing->result());
        if (std::exchange(m_lookAgain, false))
            look();
    });
    m_listing->setFuture(QtConcurrent::run(&FolderWatch::list, m_folder));
}

void FolderWatch::take(const Listing& listing) {
    const bool first = !std::exchange(m_looked, true);
    if (!listing.exists) {
        if (!m_missing) {
            m_missing = true;
            // The watcher drops a folder that went; the scan finds it again.
            m_watcher.removePaths(m_watcher.directories());
            Q_EMIT folderMissing();
        }
        m_settle.stop();
        return;
    }
    if (m_missing) {
        m_missing = false;
        Q_EMIT folderBack();
    }
    watchFolder();

    QSet<QString> present;
    const QDateTime quietSince = QDateTime::currentDateTime().addSecs(-settleTime.count());
    for (const Entry& entry : listing.entries) {
        present.insert(entry.path);
        Sighting& sighting = m_seen[entry.path];
        if (sighting.size != entry.size || sighting.modified != entry.modified) {
            sighting.size = entry.size;
            sighting.modified = entry.modified;
            sighting.unchangedFor.start();
            sighting.reported =
                first && m_existing == ExistingFiles::AreKnown && entry.modified <= quietSince;
            continue;
        }
        if (sighting.reported ||
            !sighting.unchangedFor.hasExpired(std::chrono::milliseconds(settleTime).count()))
            continue;
        // An empty file is one whose writer has not begun.
        if (sighting.size == 0 || !entry.opens)
            continue;
        sighting.reported = true;
        Q_EMIT fileReady(entry.path);
    }
    // A file that went and comes back is new again.
    m_seen.removeIf([&present](const auto& item) { return !present.contains(item.key()); });
    if (isSettling()) {
        m_settle.start();
        return;
    }
    m_settle.stop();
    Q_EMIT settled();
}

} // namespace tarnwick
