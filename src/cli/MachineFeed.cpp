#include "cli/MachineFeed.h"

#include "cli/PairUpload.h"

#include <QFutureWatcher>
#include <QUrl>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>
#include <utility>

namespace tarnwick::cli {

namespace {

struct Digests {
    std::optional<QByteArray> current;
    QByteArray sent;
};

} // namespace

MachineFeed::MachineFeed(Machine machine, AppPersistence& history, SentDigests::StoreOpener store,
                         bool once, QObject* parent)
    : QObject(parent)
    , m_machine(std::move(machine))
    , m_history(history)
    , m_store(std::move(store))
    , m_once(once)
    , m_busy(m_machine.status == Machine::ConnectionStatus::Busy)
    , m_retry(this) {
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        m_state = State::Ready;
        next();
    });
}

void MachineFeed::add(const QString& path) {
    if (m_stopping || m_queue.contains(path))
        return;
    m_queue.append(path);
    if (m_state == State::Ready)
        next();
}

void MachineFeed::setBusy(bool busy) {
    m_busy = busy;
    if (!busy && m_state == State::WaitingBusy) {
        m_state = State::Ready;
        next();
    }
}

bool MachineFeed::isDone() const {
    return m_queue.isEmpty() && m_current.isEmpty() &&
           (m_state == State::Ready || m_state == State::WaitingBusy);
}

void MachineFeed::stop() {
    m_stopping = true;
    m_queue.clear();
    m_retry.stop();
    if (m_upload) {
        m_upload->cancel();
        return;
    }
    // What is being hashed or remembered ends by itself and finds the feed stopping.
    if (m_state != State::Hashing && m_state != State::Remembering) {
        m_current.clear();
        m_state = State::Ready;
        Q_EMIT done();
    }
}

void MachineFeed::next() {
    if (m_state != State::Ready)
        return;
    if (m_stopping || (m_current.isEmpty() && m_queue.isEmpty())) {
        Q_EMIT done();
        return;
    }
    if (m_busy) {
        if (m_once) {
            const QString reason = tr("%1 is busy, so nothing was sent to it.").arg(m_machine.id());
            for (const QString& path : std::exchange(m_queue, {})) {
                m_current = path;
                tell(WatchEvent::Kind::Failed, reason, Failure);
            }
            m_current.clear();
            Q_EMIT done();
            return;
        }
        m_state = State::WaitingBusy;
        tell(WatchEvent::Kind::WaitingBusy);
        return;
    }
    if (m_current.isEmpty())
        m_current = m_queue.takeFirst();

    m_state = State::Hashing;
    auto* hashing = new QFutureWatcher<Digests>(this);
    connect(hashing, &QFutureWatcherBase::finished, this, [this, hashing] {
        hashing->deleteLater();
        const Digests digests = hashing->result();
        hashed(digests.current, digests.sent);
    });
    hashing->setFuture(
        QtConcurrent::run([store = m_store, machine = m_machine.id(), path = m_current] {
            return Digests{SentDigests::fileDigest(path), SentDigests(store).digest(machine, path)};
        }));
}

void MachineFeed::hashed(const std::optional<QByteArray>& digest, const QByteArray& sent) {
    m_state = State::Ready;
    if (m_stopping)
        return finishCurrent();
    if (!digest) {
        tell(WatchEvent::Kind::Failed, tr("%1 could not be read.").arg(m_current), FileChanged);
        return finishCurrent();
    }
    if (*digest == sent) {
        tell(WatchEvent::Kind::Unchanged);
        return finishCurrent();
    }
    send(*digest);
}

void MachineFeed::send(const QByteArray& digest) {
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(m_current));
    if (!file) {
        tell(WatchEvent::Kind::Failed, file.error().description(), FileChanged);
        return finishCurrent();
    }
    m_state = State::Sending;
    // The remembered digest decides what is sent again, not the history's duplicate window.
    m_upload = new PairUpload({file.value(), m_machine, std::nullopt}, true, m_history, this);
    connect(m_upload, &PairUpload::ended, this, [this, digest](const PairOutcome& outcome) {
        m_upload->deleteLater();
        sent(outcome, digest);
    });
    m_upload->start();
}

void MachineFeed::sent(const PairOutcome& outcome, const QByteArray& digest) {
    m_state = State::Ready;
    if (outcome.code == Unreachable && !m_once && !m_stopping) {
        m_state = State::WaitingRetry;
        WatchEvent waiting{WatchEvent::Kind::WaitingUnreachable, m_current, m_machine.id(), {}};
        waiting.retrySeconds = int(m_retryPause.count());
        Q_EMIT event(waiting);
        m_retry.start(m_retryPause);
        m_retryPause = std::min(m_retryPause * 2, longestRetry);
        return;
    }
    m_retryPause = firstRetry;
    if (outcome.code != Success) {
        if (!m_stopping || outcome.code != Cancelled)
            tell(WatchEvent::Kind::Failed,
                 outcome.advice.isEmpty() ? outcome.message
                                          : outcome.message + u'\n' + outcome.advice,
                 outcome.code);
        return finishCurrent();
    }
    tell(WatchEvent::Kind::Sent, outcome.warning.value_or(QString()));
    m_state = State::Remembering;
    auto* remembering = new QFutureWatcher<std::optional<Error>>(this);
    connect(remembering, &QFutureWatcherBase::finished, this, [this, remembering] {
        remembering->deleteLater();
        if (const std::optional<Error> error = remembering->result())
            tell(WatchEvent::Kind::Failed,
                 tr("It may be sent again, because what was sent could not be remembered: %1")
                     .arg(error->description()),
                 Failure);
        m_state = State::Ready;
        finishCurrent();
    });
    remembering->setFuture(
        QtConcurrent::run([store = m_store, machine = m_machine.id(), path = m_current, digest] {
            return SentDigests(store).remember(machine, path, digest);
        }));
}

void MachineFeed::finishCurrent() {
    m_current.clear();
    next();
}

void MachineFeed::tell(WatchEvent::Kind kind, const QString& message, ExitCode code) {
    WatchEvent told{kind, m_current, m_machine.id(), message, code};
    Q_EMIT event(told);
}

} // namespace tarnwick::cli
