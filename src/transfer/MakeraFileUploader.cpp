#include "transfer/MakeraFileUploader.h"

#include "protocol/MakeraConnection.h"
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

} // namespace

MakeraFileUploader::MakeraFileUploader(UploadTimings timings, QObject* parent)
    : FileUploading(parent)
    , m_timings(timings)
    , m_pause(this) {
    m_pause.setSingleShot(true);
    QObject::connect(&m_pause, &QTimer::timeout, this, &MakeraFileUploader::sendOpeningMD5);
}

MakeraFileUploader::~MakeraFileUploader() {
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
    m_state = State::Reading;

    m_loading = new QFutureWatcher<Result<LoadedJobFile>>(this);
    QObject::connect(m_loading, &QFutureWatcherBase::finished, this,
                     [this] { fileLoaded(m_loading->result()); });
    m_loading->setFuture(QtConcurrent::run(loadJobFile, file.url.toLocalFile()));
}

void MakeraFileUploader::cancel() {
    m_cancelRequested = true;
    switch (m_state) {
    case State::Idle:
    case State::Done:
        return;
    case State::Reading:
    case State::Connecting:
        fail(UploadError::cancelled(), CancelPacket::DoNotSend);
        return;
    case State::Opening:
        m_pause.stop();
        fail(UploadError::cancelled(), CancelPacket::Send);
        return;
    case State::Probing:
    case State::Transferring:
        // Wakes the pending wait, which then ends the step.
        m_connection->cancel();
        return;
    }
}

void MakeraFileUploader::fileLoaded(const Result<LoadedJobFile>& loaded) {
    if (m_state != State::Reading)
        return;
    if (!loaded)
        return fail(loaded.error(), CancelPacket::DoNotSend);
    m_content = loaded.value();
    const QString name = m_file.fileName();
    if (m_content.bytes.isEmpty())
        return fail(UploadError::rejected(tr("%1 is empty.").arg(name)), CancelPacket::DoNotSend);
    // The view reply carries the chunk count in 32 bits.
    if ((m_content.bytes.size() + chunkSize - 1) / chunkSize > qint64(0xFFFFFFFF))
        return fail(UploadError::rejected(tr("%1 is too large to send.").arg(name)),
                    CancelPacket::DoNotSend);
    Q_EMIT progress({TransferProgress::Phase::Preparing, 0, m_content.bytes.size(), 0});
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
    m_state = State::Opening;
    const QString name = m_file.fileName();
    m_session.emplace(m_content.bytes, name, chunkSize, m_content.md5);
    m_session->setLastPacket({MakeraPacketType::FileMD5, m_session->md5()});
    qCInfo(uploadLog, "Uploading %lld bytes to %s in %ld chunks, md5 %s",
           qint64(m_content.bytes.size()),
           qUtf8Printable(QLatin1String(MakeraFilename::destinationFolder) + name),
           long(m_session->chunkCount()), m_session->md5().constData());

    if (std::optional<Error> error =
            m_connection->send({MakeraPacketType::FileStart, m_uploadCommand}))
        return fail(*error, CancelPacket::DoNotSend);
    m_pause.start(m_timings.openingPause);
}

void MakeraFileUploader::sendOpeningMD5() {
    if (std::optional<Error> error = m_connection->send(*m_session->lastPacket()))
        return fail(*error, CancelPacket::DoNotSend);
    m_state = State::Transferring;
    m_transferClock.start();
    m_lastReportNs = 0;
    awaitRequest();
}

void MakeraFileUploader::awaitRequest() {
    if (m_cancelRequested)
        return fail(UploadError::cancelled(), CancelPacket::Send);
    m_connection->nextPacket(m_timings.packetWait);
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
    case MakeraUploadSession::Event::Kind::Send:
        if (std::optional<Error> error = m_connection->send(*event.value()->packet))
            return fail(*error, CancelPacket::DoNotSend);
        reportProgress();
        return awaitRequest();
    }
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
    if (sent < total && now - m_lastReportNs < interval)
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
    const qint64 size = m_content.bytes.size();
    Q_EMIT progress({TransferProgress::Phase::Completed, size, size, 0});
    closeConnection();
    m_state = State::Done;
    QMetaObject::invokeMethod(this, &Operation::finished, Qt::QueuedConnection);
}

void MakeraFileUploader::fail(const Error& error, CancelPacket cancelPacket) {
    if (cancelPacket == CancelPacket::Send)
        sendCancelPacket();
    closeConnection();
    m_state = State::Done;
    if (m_loading)
        m_loading->disconnect(this);
    const Error outcome = uploadError(error);
    QMetaObject::invokeMethod(
        this, [this, outcome] { Q_EMIT failed(outcome); }, Qt::QueuedConnection);
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
