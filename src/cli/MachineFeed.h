#pragma once

#include "app/AppPersistence.h"
#include "app/SentDigests.h"
#include "cli/WatchEvent.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <chrono>

namespace tarnwick::cli {

class PairUpload;
struct PairOutcome;

// The files a folder watch has for one machine, sent one at a time in the order found. A file
// whose content the machine already got under that name is skipped; a busy machine waits until
// it announces itself idle; an unreachable one is tried again with growing pauses. With `once`
// nothing waits: a busy or unreachable machine fails its files.
class MachineFeed : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds firstRetry{1};
    static constexpr std::chrono::seconds longestRetry{60};

    MachineFeed(Machine machine, AppPersistence& history, SentDigests::StoreOpener store, bool once,
                QObject* parent = nullptr);

    const Machine& machine() const { return m_machine; }
    void add(const QString& path);
    // From the machine's announcements.
    void setBusy(bool busy);
    // Nothing queued, nothing under way.
    bool isDone() const;
    // Drops what waits and cancels the upload under way; done() once it has ended.
    void stop();

Q_SIGNALS:
    void event(const tarnwick::cli::WatchEvent& event);
    void done();

private:
    enum class State {
        Ready,
        Hashing,
        Sending,
        Remembering,
        WaitingBusy,
        WaitingRetry
    };

    void next();
    void hashed(const std::optional<QByteArray>& digest, const QByteArray& sent);
    void send(const QByteArray& digest);
    void sent(const PairOutcome& outcome, const QByteArray& digest);
    void finishCurrent();
    void tell(WatchEvent::Kind kind, const QString& message = {}, ExitCode code = Success);

    Machine m_machine;
    AppPersistence& m_history;
    const SentDigests::StoreOpener m_store;
    const bool m_once;
    QStringList m_queue;
    QString m_current;
    State m_state = State::Ready;
    bool m_busy = false;
    bool m_stopping = false;
    std::chrono::seconds m_retryPause = firstRetry;
    QTimer m_retry;
    QPointer<PairUpload> m_upload;
};

} // namespace tarnwick::cli
