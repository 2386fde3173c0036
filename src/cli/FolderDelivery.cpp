#include "cli/FolderDelivery.h"

#include "discovery/LANMachineDiscoverer.h"

#include <QTimer>

#include <algorithm>

namespace tarnwick::cli {

namespace {

// A scan reports each machine once, so a change of status is heard in the next window.
constexpr std::chrono::seconds listeningWindow{2};

} // namespace

FolderDelivery::FolderDelivery(const QString& folder, const QList<Machine>& machines,
                               quint16 announcementPort, AppPersistence& history,
                               SentDigests::StoreOpener store, bool once, QObject* parent)
    : QObject(parent)
    , m_watch(folder, this)
    , m_announcementPort(announcementPort)
    , m_once(once) {
    for (const Machine& machine : machines) {
        auto* feed = new MachineFeed(machine, history, store, once, this);
        connect(feed, &MachineFeed::event, this, &FolderDelivery::told);
        connect(feed, &MachineFeed::done, this, &FolderDelivery::checkFinished);
        m_feeds.append(feed);
    }
    connect(&m_watch, &FolderWatch::fileReady, this, [this](const QString& path) {
        Q_EMIT event({WatchEvent::Kind::Seen, path});
        for (MachineFeed* feed : std::as_const(m_feeds))
            feed->add(path);
    });
    connect(&m_watch, &FolderWatch::settled, this, &FolderDelivery::checkFinished);
    connect(&m_watch, &FolderWatch::folderMissing, this, [this] {
        Q_EMIT event({WatchEvent::Kind::FolderMissing, m_watch.folder()});
    });
    connect(&m_watch, &FolderWatch::folderBack, this, [this] {
        Q_EMIT event({WatchEvent::Kind::FolderBack, m_watch.folder()});
    });
}

void FolderDelivery::start() {
    Q_EMIT event({WatchEvent::Kind::Watching, m_watch.folder()});
    if (!m_once)
        listen();
    m_watch.start();
    checkFinished();
}

void FolderDelivery::stop() {
    if (m_stopping)
        return;
    m_stopping = true;
    if (m_scan)
        m_scan->cancel();
    for (MachineFeed* feed : std::as_const(m_feeds))
        feed->stop();
    checkFinished();
}

void FolderDelivery::listen() {
    if (m_stopping)
        return;
    m_scan = LANMachineDiscoverer(m_announcementPort).discover(listeningWindow, this);
    connect(m_scan, &MachineScan::machineFound, this, &FolderDelivery::heard);
    connect(m_scan, &Operation::finished, this, &FolderDelivery::listen);
    connect(m_scan, &Operation::failed, this, [this](const Error& error) {
        if (error.is<CancellationError>())
            return;
        // The uploads go on; only a busy machine is no longer told apart.
        Q_EMIT event({WatchEvent::Kind::Failed,
                      {},
                      {},
                      tr("Announcements cannot be heard, so a busy machine is not noticed: %1")
                          .arg(discoveryFailureMessage(error)),
                      Failure});
    });
}

void FolderDelivery::heard(const Machine& machine) {
    for (MachineFeed* feed : std::as_const(m_feeds)) {
        if (feed->machine().id() == machine.id())
            feed->setBusy(machine.status == Machine::ConnectionStatus::Busy);
    }
}

void FolderDelivery::told(const WatchEvent& told) {
    if (told.kind == WatchEvent::Kind::Failed && m_exitCode == Success)
        m_exitCode = told.code;
    Q_EMIT event(told);
}

void FolderDelivery::checkFinished() {
    if (m_finished)
        return;
    const bool idle = std::all_of(m_feeds.cbegin(), m_feeds.cend(),
                                  [](const MachineFeed* feed) { return feed->isDone(); });
    if (!idle || (!m_stopping && (!m_once || m_watch.isSettling())))
        return;
    m_finished = true;
    // After the event that ended the last feed has been told.
    QTimer::singleShot(0, this, &FolderDelivery::finished);
}

} // namespace tarnwick::cli
