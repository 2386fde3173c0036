#pragma once

#include "app/Services.h"
#include "transfer/LoadedJobFile.h"
#include "transfer/MakeraUploadSession.h"
#include "transfer/UploadTimings.h"

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QPointer>
#include <QTimer>

#include <optional>

namespace tarnwick {

class MakeraConnection;

// Carries one job file to one Makera machine: reads it (off the main thread), connects, asks for
// the file type, opens the transfer and answers the machine's requests until it reports the end of
// the file. Lives on the thread that creates it; every wait is a signal, so nothing blocks.
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
        Reading,
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

    void fileLoaded(const Result<LoadedJobFile>& loaded);
    void connectToMachine();
    void probe();
    void awaitProbeAnswer();
    void probeAnswered(const MakeraPacket& packet);
    void probeEnded(const std::optional<QString>& fileType);
    void open();
    void sendOpeningMD5();
    void awaitRequest();
    void answer(const MakeraPacket& packet);
    void requestWaitFailed(const Error& error);
    void reportProgress();

    void packetReceived(const MakeraPacket& packet);
    void waitFailed(const Error& error);

    void succeed();
    void fail(const Error& error, CancelPacket cancelPacket);
    void sendCancelPacket();
    void closeConnection();

    const UploadTimings m_timings;
    State m_state = State::Idle;
    bool m_cancelRequested = false;
    JobFile m_file;
    Machine m_machine;
    QFutureWatcher<Result<LoadedJobFile>>* m_loading = nullptr;
    LoadedJobFile m_content;
    QByteArray m_uploadCommand;
    std::optional<MakeraUploadSession> m_session;
    QPointer<MakeraConnection> m_connection;
    QTimer m_pause;
    QElapsedTimer m_probeClock;
    QElapsedTimer m_transferClock;
    qint64 m_lastReportNs = 0;
};

} // namespace tarnwick
