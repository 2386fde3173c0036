#include "cli/PairUpload.h"

#include "app/UploadAdvice.h"
#include "transfer/MakeraFileUploader.h"

namespace tarnwick::cli {

PairUpload::PairUpload(UploadPair pair, bool again, AppPersistence& persistence, QObject* parent)
    : QObject(parent)
    , m_pair(std::move(pair))
    , m_again(again)
    , m_workflow(new UploadWorkflow(
          m_pair.file, m_pair.machine, persistence,
          [] { return std::make_unique<MakeraFileUploader>(); }, this)) {
    connect(m_workflow, &UploadWorkflow::checking, this, &PairUpload::checking);
    connect(m_workflow, &UploadWorkflow::connected, this, [this] { m_reach.connected = true; });
    connect(m_workflow, &UploadWorkflow::progress, this, [this](const TransferProgress& value) {
        if (value.phase == TransferProgress::Phase::Uploading) {
            m_reach.transferring = true;
            // The machine asks for the checksum and the chunking before the first chunk (and may
            // ask for the chunking again): a value with no byte taken is no news, and the next
            // value with bytes tells where the transfer stands.
            if (value.bytesSent == 0)
                return;
        }
        Q_EMIT progress(value);
    });
    connect(m_workflow, &UploadWorkflow::ended, this, &PairUpload::end);
}

QString PairUpload::duplicateMessage() {
    return tr("This exact file was uploaded to this machine in the last 24 hours. Run the "
              "command again with --again to send it anyway.");
}

void PairUpload::start() {
    if (m_ended)
        return;
    if (m_pair.skipReason) {
        m_ended = true;
        Q_EMIT ended({Failure, *m_pair.skipReason});
        return;
    }
    m_workflow->start(m_again);
}

void PairUpload::cancel() {
    m_workflow->cancel();
}

void PairUpload::end(const UploadOutcome& outcome) {
    if (m_ended)
        return;
    m_ended = true;
    switch (outcome.kind) {
    case UploadOutcome::Kind::Uploaded:
        Q_EMIT ended({});
        return;
    case UploadOutcome::Kind::UploadedNotRecorded:
        Q_EMIT ended({Success, {}, outcome.notRecordedMessage()});
        return;
    case UploadOutcome::Kind::Failed:
        Q_EMIT ended({exitCodeFor(*outcome.error, m_reach),
                      outcome.error->description(),
                      {},
                      uploadAdvice(*outcome.error)});
        return;
    case UploadOutcome::Kind::DuplicateRefused:
        Q_EMIT ended({Duplicate, duplicateMessage()});
        return;
    }
}

} // namespace tarnwick::cli
