#include "transfer/MakeraFileUploader.h"

#include "protocol/DeadlineTimer.h"
#include "protocol/MakeraConnection.h"
#include "transfer/JobFileChunks.h"
#include "transfer/MakeraCapability.h"
#include "transfer/MakeraFilename.h"
#include "transfer/UploadLog.h"

#include <QStringDecoder>
#include <QtConcurrent>

namespace tarnwick {

namespace {

// An upload's failures reach the user as upload errors where the platform only says "cancelled".
Error uploadError(const Error& error) {
    if (error.is<CancellationError>())
        return UploadError::cancelled();
    return error;
}

std::optional<QString> utf8Text(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

const MakeraPacket cancelPacket{MakeraPacketType::FileCancel, {}};

// A file that hashes quickly shows no checking progress at all.
constexpr std::chrono::milliseconds checkingQuietPeriod{500};
constexpr std::chrono::milliseconds checkingReportInterval{100};

} // namespace

MakeraFileUploader::MakeraFileUploader(UploadTimings timings, QObject* parent)
    : FileUploading(parent)
    , m_timings(timings)
    , m_checkingReport(this)
    , m_pause(new DeadlineTimer(this)) {
    QObject::connect(m_pause, &DeadlineTimer::expired, this, &MakeraFileUploader::sendOpeningMD5);
    m_checkingReport.setInterval(checkingReportInterval);
    QObject::connect(&m_checkingReport, &QTimer::timeout, this,
                     &MakeraFileUploader::reportChecking);
}

MakeraFileUploader::~MakeraFileUploader() {
    if (m_checkingProgress)
        m_checkingProgress->stop = true;
    if (!m_connection)
        return;
    m_connection->disconnect(this);
    if (m_state == State::Probing || m_state == State::Opening || m_state == State::Transferring)
        sendCancelPacket();
    closeConnection();
}

UploaderFactory MakeraFileUploader::factory() {
    return [] { return std::make_unique<MakeraFileUploader>(); };
}

void MakeraFileUploader::upload(const JobFile& file, const Machine& machine) {
    Q_ASSERT(m_state == State::Idle);
    m_cancelRequested = false;
    m_file = file;
    m_machine = machine;
    m_state = State::Checking;

    m_checkingProgress = std::make_shared<DigestProgress>();
    m_checking = new QFutureWatcher<Result<JobFileDigest>>(this);
    QObject::connect(m_checking, &QFutureWatcherBase::finished, this,
                     [this] { fileChecked(m_checking->result()); });
    m_checking->setFuture(
        QtConcurrent::run([path = file.url.toLocalFile(), progress = m_checkingProgress] {
            return digestJobFile(path, chunkSize, *progress);
        }));
    m_checkingClock.start();
    m_checkingReport.start();
}

void MakeraFileUploader::cancel() {
    m_cancelRequested = true;
    switch (m_state) {
    case State::Idle:
    case State::Done:
        return;
    case State::Checking:
    case State::Connecting:
        fail(UploadError::cancelled(), CancelPacket::DoNotSend);
        return;
    case State::Opening:
        m_pause->stop();
        fail(UploadError::cancelled(), CancelPacket::Send);
        return;
    case State::Transferring:
        // No wait to wake while a chunk is read back from the file.
        if (m_pendingChunk != 0)
            return fail(UploadError::cancelled(), CancelPacket::Send);
        [[fallthrough]];
    case State::Probing:
        // Wakes the pending wait, which then ends the step.
        m_connection->cancel();
        return;
    }
}

void MakeraFileUploader::reportChecking() {
    const qint64 total = m_checkingProgress->totalBytes;
    if (m_checkingClock.elapsed() >= checkingQuietPeriod.count() && total > 0)
        Q_EMIT checking(m_checkingProgress->bytesRead, total);
}

void MakeraFileUploader::fileChecked(const Result<JobFileDigest>& digest) {
    if (m_state != State::Checking)
        return;
    m_checkingReport.stop();
    if (!digest)
        return fail(digest.error(), CancelPacket::DoNotSend);
    m_digest = std::make_shared<const JobFileDigest>(digest.value());
    const qint64 size = m_digest->size;
    const QString name = m_file.fileName();
    if (size == 0)
        return fail(UploadError::rejected(tr("%1 is empty.").arg(name)), CancelPacket::DoNotSend);
    // The view reply carries the chunk count in 32 bits.
    if ((size + chunkSize - 1) / chunkSize > qint64(0xFFFFFFFF))
        return fail(UploadError::rejected(tr("%1 is too large to send.").arg(name)),
                    CancelPacket::DoNotSend);
    Q_EMIT progress({TransferProgress::Phase::Preparing, 0, size, 0});
    // A name the machine cannot take ends the upload before anything goes out.
    Result<QByteArray> command = MakeraFilename::uploadCommand(name);
    if (!command)
        return fail(command.error(), CancelPacket::DoNotSend);
    m_uploadCommand = std::move(command).value();
    connectToMachine();
}

void MakeraFileUploader::connectToMachine() {
    Result<MakeraConnection*> created = MakeraConnection::create(m_machine, this);
    if (!created)
        return fail(created.error(), CancelPacket::DoNotSend);
    m_connection = created.value();
    QObject::connect(m_connection, &MakeraConnection::connected, this, &MakeraFileUploader::probe);
    QObject::connect(m_connection, &MakeraConnection::connectFailed, this,
                     [this](const Error& error) { fail(error, CancelPacket::DoNotSend); });
    QObject::connect(m_connection, &MakeraConnection::packetReceived, this,
                     &MakeraFileUploader::packetReceived);
    QObject::connect(m_connection, &MakeraConnection::waitFailed, this,
                     &MakeraFileUploader::waitFailed);

    m_state = State::Connecting;
    qCInfo(uploadLog, "Connecting to %s:%hu", qUtf8Printable(m_machine.ipAddress), m_machine.port);
    m_connection->connect(m_timings.connect);
}

void MakeraFileUploader::probe() {
    m_state = State::Probing;
    Q_EMIT connected();
    if (m_connection->send({MakeraPacketType::ControlMulti, QByteArrayLiteral("ftype")}))
        return probeEnded(std::nullopt);
    m_probeClock.start();
    awaitProbeAnswer();
}

void MakeraFileUploader::awaitProbeAnswer() {
    if (m_probeClock.elapsed() >= m_timings.probeOverall.count())
        return probeEnded(std::nullopt);
    m_connection->nextPacket(m_timings.probePacket);
}

void MakeraFileUploader::probeAnswered(const MakeraPacket& packet) {
    if (const std::optional<QString> text = utf8Text(packet.payload))
        if (std::optional<QString> fileType = MakeraCapability::fileType(*text))
            return probeEnded(fileType);
    awaitProbeAnswer();
}

void MakeraFileUploader::probeEnded(const std::optional<QString>& fileType) {
    if (fileType)
        qCInfo(uploadLog, "Machine reports ftype = %s; sending uncompressed",
               qUtf8Printable(*fileType));
    else
        qCInfo(uploadLog, "Machine did not report ftype; sending uncompressed");
    if (m_cancelRequested)
        return fail(UploadError::cancelled(), CancelPacket::Send);
    open();
}

void MakeraFileUploader::open() {
    const QString name = m_file.fileName();
    m_session.emplace(m_digest->size, name, m_digest->md5, chunkSize);
    m_session->setLastPacket({MakeraPacketType::FileMD5, m_session->md5()});
    m_chunks = new JobFileChunks(m_file.url.toLocalFile(), m_digest, chunkSize, this);
    QObject::connect(m_chunks, &JobFileChunks::loaded, this,
                     [this] { serveChunk(std::exchange(m_pendingChunk, 0)); });
    QObject::connect(m_chunks, &JobFileChunks::failed, this,
                     [this](const Error& error) { fail(error, CancelPacket::Send); });
    qCInfo(uploadLog, "Uploading %lld bytes to %s in %ld chunks, md5 %s", m_digest->size,
           qUtf8Printable(QLatin1String(machineJobFolder) + name), long(m_session->chunkCount()),
           m_session->md5().constData());

    if (std::optional<Error> error =
            m_connection->send({MakeraPacketType::FileStart, m_uploadCommand}))
        return fail(*error, CancelPacket::DoNotSend);
    m_state = State::Opening;
    m_pause->start(m_timings.openingPause);
}

void MakeraFileUploader::sendOpeningMD5() {
    if (std::optional<Error> error = m_connection->send(*m_session->lastPacket()))
        return fail(*error, CancelPacket::DoNotSend);
    m_state = State::Transferring;
    m_transferClock.start();
    m_lastReportNs.reset();
    m_requestDeadline = QDeadlineTimer(m_timings.packetWait, Qt::PreciseTimer);
    awaitRequest();
}

void MakeraFileUploader::awaitRequest() {
    if (m_cancelRequested)
        return fail(UploadError::cancelled(), CancelPacket::Send);
    if (m_requestDeadline.hasExpired())
        return requestWaitFailed(UploadError::timedOut());
    m_connection->nextPacket(
        std::chrono::ceil<std::chrono::milliseconds>(m_requestDeadline.remainingTimeAsDuration()));
}

void MakeraFileUploader::answer(const MakeraPacket& packet) {
    if (!isTransferPacket(packet.type)) {
        if (const std::optional<QString> text = utf8Text(packet.payload)) {
            if (const QString trimmed = text->trimmed(); !trimmed.isEmpty())
                qCDebug(uploadLog, "Machine: %s", qUtf8Printable(trimmed));
        }
    }

    Result<std::optional<MakeraUploadSession::Event>> event = m_session->receive(packet);
    if (!event)
        return fail(event.error(), CancelPacket::DoNotSend);
    if (!event.value())
        return awaitRequest();

    switch (event.value()->kind) {
    case MakeraUploadSession::Event::Kind::Finished:
        qCInfo(uploadLog, "Machine reported the end of the file after %lld bytes",
               m_session->bytesSent());
        return succeed();
    case MakeraUploadSession::Event::Kind::Cancelled:
        qCCritical(uploadLog, "Machine cancelled after %lld bytes", m_session->bytesSent());
        return fail(UploadError::rejected(tr("The machine cancelled the transfer.")),
                    CancelPacket::DoNotSend);
    case MakeraUploadSession::Event::Kind::ReadChunk:
        return serveChunk(event.value()->chunk);
    case MakeraUploadSession::Event::Kind::Send:
        return reply(*event.value()->packet);
    }
}

void MakeraFileUploader::serveChunk(qint64 n) {
    if (m_cancelRequested)
        return fail(UploadError::cancelled(), CancelPacket::Send);
    if (std::optional<QByteArray> bytes = m_chunks->chunk(n))
        return reply(m_session->chunkReply(n, *bytes));
    m_pendingChunk = n;
    m_chunks->load(n);
}

void MakeraFileUploader::reply(const MakeraPacket& packet) {
    if (std::optional<Error> error = m_connection->send(packet))
        return fail(*error, CancelPacket::DoNotSend);
    m_requestDeadline = QDeadlineTimer(m_timings.packetWait, Qt::PreciseTimer);
    reportProgress();
    awaitRequest();
}

void MakeraFileUploader::requestWaitFailed(const Error& error) {
    const Error mapped = uploadError(error);
    qCCritical(uploadLog, "Transfer ended waiting for the machine: %s",
               qUtf8Printable(mapped.description()));
    fail(mapped, CancelPacket::Send);
}

void MakeraFileUploader::reportProgress() {
    const qint64 now = m_transferClock.nsecsElapsed();
    const qint64 sent = m_session->bytesSent();
    const qint64 total = m_session->fileSize();
    const auto interval = std::chrono::nanoseconds(m_timings.progressInterval).count();
    // The interval lies between values: the first chunk shows at once.
    if (sent < total && m_lastReportNs && now - *m_lastReportNs < interval)
        return;
    m_lastReportNs = now;
    const double seconds = std::max(double(now) / 1e9, 0.001);
    Q_EMIT progress({TransferProgress::Phase::Uploading, sent, total, double(sent) / seconds});
}

void MakeraFileUploader::packetReceived(const MakeraPacket& packet) {
    if (m_state == State::Probing)
        probeAnswered(packet);
    else if (m_state == State::Transferring)
        answer(packet);
}

void MakeraFileUploader::waitFailed(const Error& error) {
    if (m_state == State::Probing)
        probeEnded(std::nullopt);
    else if (m_state == State::Transferring)
        requestWaitFailed(error);
}

void MakeraFileUploader::succeed() {
    const qint64 size = m_digest->size;
    Q_EMIT progress({TransferProgress::Phase::Completed, size, size, 0});
    closeConnection();
    m_state = State::Done;
    QMetaObject::invokeMethod(this, &Operation::finished, Qt::QueuedConnection);
}

void MakeraFileUploader::fail(const Error& error, CancelPacket cancelPacket) {
    const Error outcome = uploadError(error).atUploadStage(uploadStage());
    if (cancelPacket == CancelPacket::Send)
        sendCancelPacket();
    closeConnection();
    m_state = State::Done;
    m_checkingReport.stop();
    if (m_checking) {
        m_checkingProgress->stop = true;
        m_checking->disconnect(this);
    }
    if (m_chunks)
        m_chunks->disconnect(this);
    QMetaObject::invokeMethod(
        this, [this, outcome] { Q_EMIT failed(outcome); }, Qt::QueuedConnection);
}

// Nothing can confirm what the machine keeps of an upload that ends after it took the command:
// once every chunk went out, the end packet may be all that was lost.
UploadStage MakeraFileUploader::uploadStage() const {
    if (m_state != State::Opening && m_state != State::Transferring)
        return UploadStage::NotOpened;
    return m_session->hasServedEveryChunk() ? UploadStage::EveryChunkSent : UploadStage::Opened;
}

void MakeraFileUploader::sendCancelPacket() {
    if (m_connection)
        m_connection->send(cancelPacket);
}

void MakeraFileUploader::closeConnection() {
    if (!m_connection)
        return;
    m_connection->disconnect(this);
    m_connection->close();
    m_connection->deleteLater();
    m_connection = nullptr;
}

} // namespace tarnwick
