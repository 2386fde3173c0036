#pragma once

#include "app/Services.h"
#include "transfer/JobFileDigest.h"
#include "transfer/MakeraUploadSession.h"
#include "transfer/UploadTimings.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>

namespace tarnwick {

class DeadlineTimer;
class JobFileChunks;
class MakeraConnection;

// Carries one job file to one Makera machine: hashes it (off the main thread), connects, asks for
// the file type, opens the transfer and answers the machine's requests, reading each chunk back
// and checking it against the hash, until the machine reports the end of the file. Lives on the
// thread that creates it; every wait is a signal, so nothing blocks.
class MakeraFileUploader : public FileUploading {
    Q_OBJECT

public:
    static constexpr qint64 chunkSize = MakeraUploadSession::defaultChunkSize;

    explicit MakeraFileUploader(UploadTimings timings = {}, QObject* parent = nullptr);
    // Ends a running upload silently: the machine is told (best effort) and the socket closed.
    ~MakeraFileUploader() override;

    // What the application model is given: a new uploader with the real timings on every call.
    static UploaderFactory factory();

    void upload(const JobFile& file, const Machine& machine) override;
    void cancel() override;

private:
    // The steps of one upload, in order.
    enum class State {
        Idle,
        Checking,
        Connecting,
        Probing,
        Opening,
        Transferring,
        Done
    };
    enum class CancelPacket {
        Send,
        DoNotSend
    };

    void reportChecking();
    void fileChecked(const Result<JobFileDigest>& digest);
    void connectToMachine();
    void probe();
    void awaitProbeAnswer();
    void probeAnswered(const MakeraPacket& packet);
    void probeEnded(const std::optional<QString>& fileType);
    void open();
    void sendOpeningMD5();
    void awaitRequest();
    void answer(const MakeraPacket& packet);
    void serveChunk(qint64 n);
    void reply(const MakeraPacket& packet);
    void requestWaitFailed(const Error& error);
    void reportProgress();

    void packetReceived(const MakeraPacket& packet);
    void waitFailed(const Error& error);

    void succeed();
    void fail(const Error& error, CancelPacket cancelPacket);
    UploadStage uploadStage() const;
    void sendCancelPacket();
    void closeConnection();

    const UploadTimings m_timings;
    State m_state = State::Idle;
    bool m_cancelRequested = false;
    JobFile m_file;
    Machine m_machine;
    std::shared_ptr<DigestProgress> m_checkingProgress;
    QFutureWatcher<Result<JobFileDigest>>* m_checking = nullptr;
    QTimer m_checkingReport;
    QElapsedTimer m_checkingClock;
    std::shared_ptr<const JobFileDigest> m_digest;
    JobFileChunks* m_chunks = nullptr;
    // The chunk whose block is being read, 0 when none.
    qint64 m_pendingChunk = 0;
    QByteArray m_uploadCommand;
    std::optional<MakeraUploadSession> m_session;
    QPointer<MakeraConnection> m_connection;
    DeadlineTimer* m_pause;
    QElapsedTimer m_probeClock;
    // Packets that are no request (status, information) do not move it.
    QDeadlineTimer m_requestDeadline;
    QElapsedTimer m_transferClock;
    std::optional<qint64> m_lastReportNs;
};

} // namespace tarnwick
