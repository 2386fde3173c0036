#include "app/FolderWatch.h"

#include "app/JobFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

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
    m_scan.start();
    look();
    if (existing == ExistingFiles::AreNew)
        return;
    const QDateTime settled = QDateTime::currentDateTime().addSecs(-settleTime.count());
    for (Sighting& sighting : m_seen)
        sighting.reported = sighting.modified <= settled;
}

bool FolderWatch::isSettling() const {
    return std::any_of(m_seen.cbegin(), m_seen.cend(),
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

void FolderWatch::look() {
    const QDir dir(m_folder);
    if (!dir.exists()) {
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
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Readable, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (!isJobFileName(entry.fileName()))
            continue;
        const QString path = entry.absoluteFilePath();
        present.insert(path);
        Sighting& sighting = m_seen[path];
        const QDateTime modified = entry.lastModified();
        if (sighting.size != entry.size() || sighting.modified != modified) {
            sighting.size = entry.size();
            sighting.modified = modified;
            sighting.unchangedFor.start();
            sighting.reported = false;
            continue;
        }
        if (sighting.reported ||
            !sighting.unchangedFor.hasExpired(std::chrono::milliseconds(settleTime).count()))
            continue;
        // An empty file is one whose writer has not begun.
        if (sighting.size == 0 || !opensForReading(path))
            continue;
        sighting.reported = true;
        Q_EMIT fileReady(path);
    }
    // A file that went and comes back is new again.
    m_seen.removeIf([&present](const auto& item) { return !present.contains(item.key()); });
    if (isSettling())
        m_settle.start();
    else
        m_settle.stop();
}

} // namespace tarnwick
