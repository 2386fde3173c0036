#include "cli/PairUpload.h"

#include "app/UploadAdvice.h"
#include "transfer/MakeraFileUploader.h"

#include <QDateTime>

namespace tarnwick::cli {

PairUpload::PairUpload(UploadPair pair, bool again, AppPersistence& persistence, QObject* parent)
    : QObject(parent)
    , m_pair(std::move(pair))
    , m_again(again)
    , m_persistence(persistence) {}

QString PairUpload::duplicateMessage() {
    return tr("This exact file was uploaded to this machine in the last 24 hours. Run the "
              "command again with --again to send it anyway.");
}

void PairUpload::start() {
    if (m_ended || m_uploader)
        return;
    if (m_pair.skipReason)
        return end({Failure, *m_pair.skipReason, {}});
    // Read at the start of each pair, so that another process's upload a moment ago counts.
    if (!m_again &&
        isRecentDuplicate(m_persistence.uploadRecords(), m_pair.machine.id(), m_pair.file.id(),
                          m_pair.file.size, QDateTime::currentDateTimeUtc()))
        return end({Duplicate, duplicateMessage(), {}});

    m_uploader = new MakeraFileUploader({}, this);
    connect(m_uploader, &FileUploading::checking, this, &PairUpload::checking);
    connect(m_uploader, &FileUploading::connected, this, [this] { m_reach.connected = true; });
    connect(m_uploader, &FileUploading::progress, this, [this](const TransferProgress& value) {
        if (value.phase == TransferProgress::Phase::Uploading)
            m_reach.transferring = true;
        Q_EMIT progress(value);
    });
    connect(m_uploader, &Operation::finished, this, &PairUpload::uploaded);
    connect(m_uploader, &Operation::failed, this, &PairUpload::failed);
    m_uploader->upload(m_pair.file, m_pair.machine);
}

void PairUpload::cancel() {
    if (m_ended)
        return;
    if (m_uploader)
        m_uploader->cancel();
    else
        end({Cancelled, UploadError::cancelled().description(), {}});
}

void PairUpload::uploaded() {
    const std::optional<Error> notSaved = m_persistence.recordUpload(
        {m_pair.machine.id(), m_pair.file.id(), m_pair.file.size, QDateTime::currentDateTimeUtc()});
    PairOutcome outcome;
    if (notSaved)
        outcome.warning =
            tr("The upload history could not be saved: %1").arg(notSaved->description());
    end(outcome);
}

void PairUpload::failed(const Error& error) {
    end({exitCodeFor(error, m_reach), error.description(), {}, uploadAdvice(error)});
}

void PairUpload::end(PairOutcome outcome) {
    if (m_ended)
        return;
    m_ended = true;
    Q_EMIT ended(outcome);
}

} // namespace tarnwick::cli
