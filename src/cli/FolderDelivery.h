#pragma once

#include "app/FolderWatch.h"
#include "app/Services.h"
#include "cli/MachineFeed.h"

#include <QList>
#include <QPointer>

namespace tarnwick::cli {

// A folder watch feeding machines: every complete job file to every machine, and what the
// machines announce about themselves heard all along, so that a busy one waits. With `once` it
// finishes when what the folder held at the start has been dealt with.
class FolderDelivery : public QObject {
    Q_OBJECT

public:
    FolderDelivery(const QString& folder, const QList<Machine>& machines, quint16 announcementPort,
                   AppPersistence& history, SentDigests::StoreOpener store, bool once,
                   QObject* parent = nullptr);

    void start();
    // Cancels what is under way; finished() once every machine has stopped.
    void stop();
    // The class of the first failure; success when none failed.
    ExitCode exitCode() const { return m_exitCode; }

Q_SIGNALS:
    void event(const tarnwick::cli::WatchEvent& event);
    void finished();

private:
    void listen();
    void heard(const Machine& machine);
    void told(const WatchEvent& event);
    void checkFinished();

    FolderWatch m_watch;
    const quint16 m_announcementPort;
    const bool m_once;
    QList<MachineFeed*> m_feeds;
    QPointer<MachineScan> m_scan;
    ExitCode m_exitCode = Success;
    bool m_stopping = false;
    bool m_finished = false;
};

} // namespace tarnwick::cli
