#include "app/UploadWorkflow.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

namespace tarnwick {

QString UploadOutcome::notRecordedMessage() const {
    return QCoreApplication::translate("UploadWorkflow",
                                       "The upload history could not be saved: %1")
        .arg(error ? error->description() : QString());
}

UploadWorkflow::UploadWorkflow(JobFile file, Machine machine, AppPersistence& history,
                               UploaderFactory makeUploader, QObject* parent)
    : QObject(parent)
    , m_file(std::move(file))
    , m_machine(std::move(machine))
    , m_history(history)
    , m_makeUploader(std::move(makeUploader))
    , m_now([] { return QDateTime::currentDateTimeUtc(); }) {}

// A running uploader is a child: deleting it tells the machine that the upload stops. A record
// being written still lands; only its report finds nobody.
UploadWorkflow::~UploadWorkflow() = default;

bool UploadWorkflow::isRecentDuplicate(const AppPersistence& history, const Machine& machine,
                                       const JobFile& file, const QDateTime& now) {
    return tarnwick::isRecentDuplicate(history.uploadRecords(), machine.id(), file.id(), file.size,
                                       now);
}

void UploadWorkflow::start(bool duplicateConfirmed) {
    if (m_started || m_ended)
        return;
    m_started = true;
    // Read at the start, so that another program's upload a moment ago counts.
    if (!duplicateConfirmed && isRecentDuplicate(m_history, m_machine, m_file, m_now()))
        return endLater({UploadOutcome::Kind::DuplicateRefused, std::nullopt});

    FileUploading* uploader = m_makeUploader().release();
    uploader->setParent(this);
    m_uploader = uploader;
    connect(uploader, &FileUploading::checking, this, &UploadWorkflow::checking);
    connect(uploader, &FileUploading::progress, this, &UploadWorkflow::progress);
    connect(uploader, &FileUploading::connected, this, &UploadWorkflow::connected);
    connect(uploader, &Operation::finished, this, &UploadWorkflow::record);
    connect(uploader, &Operation::failed, this, [this](const Error& error) {
        end({UploadOutcome::Kind::Failed, error});
    });
    uploader->upload(m_file, m_machine);
}

void UploadWorkflow::cancel() {
    if (m_ended)
        return;
    if (m_uploader)
        m_uploader->cancel();
    else if (!m_started)
        endLater({UploadOutcome::Kind::Failed, UploadError::cancelled()});
}

void UploadWorkflow::record() {
    m_uploader = nullptr;
    const UploadRecord record{m_machine.id(), m_file.id(), m_file.size, m_now()};
    auto* writing = new QFutureWatcher<std::optional<Error>>(this);
    connect(writing, &QFutureWatcherBase::finished, this, [this, writing] {
        const std::optional<Error> notSaved = writing->result();
        end(notSaved ? UploadOutcome{UploadOutcome::Kind::UploadedNotRecorded, notSaved}
                     : UploadOutcome{UploadOutcome::Kind::Uploaded, std::nullopt});
    });
    writing->setFuture(
        QtConcurrent::run(&AppPersistence::writers(), [open = m_history.opener(), record] {
            return open()->recordUpload(record);
        }));
}

void UploadWorkflow::endLater(UploadOutcome outcome) {
    m_started = true;
    QTimer::singleShot(0, this, [this, outcome = std::move(outcome)] { end(outcome); });
}

void UploadWorkflow::end(const UploadOutcome& outcome) {
    if (m_ended)
        return;
    m_ended = true;
    Q_EMIT ended(outcome);
}

} // namespace tarnwick
