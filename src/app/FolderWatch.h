#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>

namespace tarnwick {

// Tells which job files in one folder are complete: new or changed files whose size and
// modification time have stayed the same for `settleTime` and that open for reading. Events
// where the file system sends them, and a scan every few seconds where it does not (network
// shares, some mounts); a folder that disappears is watched again when it comes back. The folder
// is only ever read.
class FolderWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds settleTime{2};
    static constexpr std::chrono::seconds scanInterval{3};

    explicit FolderWatch(QString folder, QObject* parent = nullptr);

    const QString& folder() const { return m_folder; }
    enum class ExistingFiles {
        // Every file there at the start is reported once it has settled.
        AreNew,
        // Files there at the start that have not changed for the settling time are not reported
        // until they change.
        AreKnown
    };

    void start(ExistingFiles existing = ExistingFiles::AreNew);
    // True until the first look is done and every file seen so far has settled and been
    // reported.
    bool isSettling() const;
    // False for hidden and temporary names (a leading dot, a trailing ~, .tmp, .part) and for
    // extensions other than a job file's.
    static bool isJobFileName(const QString& fileName);

Q_SIGNALS:
    // An absolute path; again each time the file changes and settles anew.
    void fileReady(const QString& path);
    // A look found nothing more to wait for: every file seen has settled and been reported.
    void settled();
    void folderMissing();
    void folderBack();

private:
    struct Sighting {
        qint64 size = -1;
        QDateTime modified;
        QElapsedTimer unchangedFor;
        bool reported = false;
    };

    // What one look at the folder found, read on a worker thread: a share that stalls holds up
    // that thread, not this one.
    struct Entry {
        QString path;
        qint64 size = 0;
        QDateTime modified;
        bool opens = false;
    };
    struct Listing {
        bool exists = false;
        QList<Entry> entries;
    };
    static Listing list(const QString& folder);

    void look();
    void take(const Listing& listing);
    void watchFolder();

    const QString m_folder;
    QFileSystemWatcher m_watcher;
    QTimer m_scan;
    QTimer m_settle;
    QHash<QString, Sighting> m_seen;
    QPointer<QFutureWatcher<Listing>> m_listing;
    ExistingFiles m_existing = ExistingFiles::AreNew;
    bool m_lookAgain = false;
    bool m_looked = false;
    bool m_missing = false;
};

} // namespace tarnwick
