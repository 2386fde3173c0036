#include "app/UploadQueue.h"

#include "app/DisplayName.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace tarnwick {

namespace {

bool isCancellation(const Error& error) {
    return error.is<CancellationError>() || error.isUploadError(UploadError::Kind::Cancelled);
}

} // namespace

QString QueuedUpload::stateText() const {
    switch (state) {
    case State::Waiting:
        return QCoreApplication::translate("tarnwick::UploadQueue", "Waiting");
    case State::Checking:
        return QCoreApplication::translate("tarnwick::UploadQueue", "Checking the file");
    case State::Sending:
        return QCoreApplication::translate("tarnwick::UploadQueue", "Sending");
    case State::Sent:
        return QCoreApplication::translate("tarnwick::UploadQueue", "Sent");
    case State::NotRecorded:
        return QCoreApplication::translate("tarnwick::UploadQueue",
                                           "Sent, but the upload history could not be saved: %1")
            .arg(error ? error->description() : QString());
    case State::Failed:
        return error ? error->description() : QString();
    case State::Cancelled:
        return QCoreApplication::translate("tarnwick::UploadQueue", "Cancelled");
    case State::DuplicateRefused:
        return QCoreApplication::translate(
            "tarnwick::UploadQueue",
            "Not sent: this file went to this machine in the last 24 hours");
    }
    return {};
}

UploadQueue::UploadQueue(AppPersistence& history, UploaderFactory makeUploader, QObject* parent)
    : QObject(parent)
    , m_history(history)
    , m_makeUploader(std::move(makeUploader))
    , m_now([] { return QDateTime::currentDateTimeUtc(); }) {}

bool UploadQueue::isRunning() const {
    return std::any_of(m_pairs.cbegin(), m_pairs.cend(),
                       [](const QueuedUpload& pair) { return !pair.hasEnded(); });
}

void UploadQueue::start(const QList<JobFile>& files, const QList<Machine>& machines,
                        bool duplicateConfirmed) {
    if (isRunning())
        return;
    for (const QPointer<UploadWorkflow>& workflow : std::as_const(m_workflows))
        delete workflow;
    m_pairs.clear();
    for (const JobFile& file : files) {
        for (const Machine& machine : machines)
            m_pairs.append(QueuedUpload{
                .file = file, .machine = machine, .duplicateConfirmed = duplicateConfirmed});
    }
    m_workflows = QList<QPointer<UploadWorkflow>>(m_pairs.size());
    m_waiting.clear();
    for (qsizetype row = 0; row < m_pairs.size(); ++row)
        m_waiting.append(row);
    Q_EMIT pairsReset();
    // The machines are asked on the next turn of the event loop: the views show the new list of
    // pairs first, so that no turn both draws the list and opens every connection.
    QMetaObject::invokeMethod(this, &UploadQueue::startNextPairs, Qt::QueuedConnection);
    noteRunning();
}

void UploadQueue::clear() {
    if (isRunning() || m_pairs.isEmpty())
        return;
    m_pairs.clear();
    m_workflows.clear();
    Q_EMIT pairsReset();
}

// Each machine takes the pair that has waited longest for it, as soon as it has none running.
void UploadQueue::startNextPairs() {
    QSet<QString> occupied;
    for (const QueuedUpload& pair : std::as_const(m_pairs)) {
        if (pair.isRunning())
            occupied.insert(pair.machine.id());
    }
    for (auto row = m_waiting.begin(); row != m_waiting.end();) {
        const QString machine = m_pairs.at(*row).machine.id();
        if (occupied.contains(machine)) {
            ++row;
            continue;
        }
        occupied.insert(machine);
        const qsizetype started = *row;
        row = m_waiting.erase(row);
        startPair(started);
    }
}

void UploadQueue::startPair(qsizetype row) {
    QueuedUpload& pair = m_pairs[row];
    pair.state = QueuedUpload::State::Checking;
    auto* workflow = new UploadWorkflow(pair.file, pair.machine, m_history, m_makeUploader, this);
    workflow->setClock(m_now);
    m_workflows[row] = workflow;
    connect(workflow, &UploadWorkflow::checking, this, [this, row](qint64 done, qint64 total) {
        m_pairs[row].checkedFraction = total > 0 ? double(done) / double(total) : 0;
        changePair(row);
    });
    connect(workflow, &UploadWorkflow::progress, this,
            [this, row](const TransferProgress& progress) {
                m_pairs[row].state = QueuedUpload::State::Sending;
                m_pairs[row].progress = progress;
                changePair(row);
            });
    connect(workflow, &UploadWorkflow::ended, this,
            [this, row](const UploadOutcome& outcome) { endPair(row, outcome); });
    changePair(row);
    workflow->start(pair.duplicateConfirmed);
}

void UploadQueue::endPair(qsizetype row, const UploadOutcome& outcome) {
    using State = QueuedUpload::State;
    QueuedUpload& pair = m_pairs[row];
    m_workflows[row]->deleteLater();
    m_workflows[row] = nullptr;
    pair.error = outcome.error;
    switch (outcome.kind) {
    case UploadOutcome::Kind::Uploaded:
        pair.state = State::Sent;
        break;
    case UploadOutcome::Kind::UploadedNotRecorded:
        pair.state = State::NotRecorded;
        break;
    case UploadOutcome::Kind::Failed:
        pair.state = isCancellation(*outcome.error) ? State::Cancelled : State::Failed;
        break;
    case UploadOutcome::Kind::DuplicateRefused:
        pair.state = State::DuplicateRefused;
        break;
    }
    changePair(row);
    startNextPairs();
    noteRunning();
}

void UploadQueue::cancel(qsizetype row) {
    if (row < 0 || row >= m_pairs.size() || m_pairs.at(row).hasEnded())
        return;
    if (m_workflows.at(row)) {
        m_workflows.at(row)->cancel();
        return;
    }
    m_waiting.removeOne(row);
    m_pairs[row].state = QueuedUpload::State::Cancelled;
    m_pairs[row].error = UploadError::cancelled();
    changePair(row);
    noteRunning();
}

void UploadQueue::cancelAll() {
    // The waiting pairs go first, so that no machine starts its next file as its running one ends.
    for (const qsizetype row : QList<qsizetype>(m_waiting))
        cancel(row);
    for (qsizetype row = 0; row < m_pairs.size(); ++row)
        cancel(row);
}

void UploadQueue::retry(qsizetype row) {
    if (row < 0 || row >= m_pairs.size() || !m_pairs.at(row).canRetry())
        return;
    QueuedUpload& pair = m_pairs[row];
    if (pair.state == QueuedUpload::State::DuplicateRefused)
        pair.duplicateConfirmed = true;
    pair.state = QueuedUpload::State::Waiting;
    pair.error.reset();
    pair.progress.reset();
    pair.checkedFraction = 0;
    m_waiting.append(row);
    changePair(row);
    startNextPairs();
    noteRunning();
}

void UploadQueue::changePair(qsizetype row) {
    Q_EMIT pairChanged(row);
}

void UploadQueue::noteRunning() {
    const bool running = isRunning();
    if (running == m_wasRunning)
        return;
    m_wasRunning = running;
    Q_EMIT runningChanged();
    if (!running)
        Q_EMIT ended();
}

QString UploadQueue::summary() const {
    using State = QueuedUpload::State;
    const auto count = [this](auto test) {
        return int(std::count_if(m_pairs.cbegin(), m_pairs.cend(), test));
    };
    const auto inState = [&](State state) {
        return count([state](const QueuedUpload& pair) { return pair.state == state; });
    };
    const bool severalFiles =
        std::any_of(m_pairs.cbegin(), m_pairs.cend(), [this](const QueuedUpload& pair) {
            return pair.file.id() != m_pairs.first().file.id();
        });

    QStringList parts{
        tr("%1 of %n sent", nullptr, int(m_pairs.size())).arg(count([](const QueuedUpload& pair) {
            return pair.isSent();
        }))};
    QStringList failures;
    for (const QueuedUpload& pair : m_pairs) {
        if (pair.state != State::Failed)
            continue;
        failures << (severalFiles
                         ? tr("%1, %2: %3")
                               .arg(displayName(pair.machine.name), pair.file.fileName(),
                                    pair.stateText())
                         : tr("%1: %2").arg(displayName(pair.machine.name), pair.stateText()));
    }
    if (!failures.isEmpty())
        parts << tr("%n failed: %1", nullptr, int(failures.size())).arg(failures.join(tr("; ")));
    if (const int cancelled = inState(State::Cancelled))
        parts << tr("%n cancelled", nullptr, cancelled);
    if (const int refused = inState(State::DuplicateRefused))
        parts << tr("%n not sent as recent duplicates", nullptr, refused);
    if (const int unrecorded = inState(State::NotRecorded))
        parts << tr("%n not recorded in the upload history", nullptr, unrecorded);
    return parts.join(tr("; "));
}

} // namespace tarnwick
