#pragma once

#include "protocol/MakeraFrameParser.h"
#include "protocol/MakeraPacket.h"
#include "sim/PacketLog.h"
#include "sim/SimOptions.h"

#include <QCryptographicHash>
#include <QFile>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

namespace tarnwick::sim {

// One client connection to the simulated machine. Like a controller it drives an upload itself:
// after the file-start and MD5 packets it asks for the MD5, the view and every chunk, writes each
// chunk to disk as it arrives and hashes the file as it grows, so that the end of even a very
// large file is reported at once. It never starts a job.
class SimConnection : public QObject {
    Q_OBJECT

public:
    SimConnection(QTcpSocket* socket, const SimOptions& options, PacketLog& log,
                  QObject* parent = nullptr);

Q_SIGNALS:
    // An upload ended, stored or not.
    void uploadEnded();

private:
    enum class State {
        Idle,
        AwaitingOpeningMD5,
        AwaitingMD5,
        AwaitingView,
        AwaitingChunk,
        AwaitingRepeat,
        Silent
    };

    void readAvailable();
    void handle(const MakeraPacket& packet);
    void answerProbe(const MakeraPacket& packet);
    void startUpload(const QByteArray& command);
    void openingMD5Arrived(const MakeraPacket& packet);
    void md5Arrived(const MakeraPacket& packet);
    void viewArrived(const MakeraPacket& packet);
    void chunkArrived(const MakeraPacket& packet);
    void repeatArrived(const MakeraPacket& packet);
    // Runs a fault set for this many received chunks; true when it took over the flow.
    bool applyFaults(qint64 chunks);
    bool storeChunk(qint64 index, QByteArrayView bytes);
    void hashStoredChunks();
    void resetConnection();
    void requestNextChunk();
    void finishUpload();
    void refuse(const QString& reason);
    void endUpload();

    void request(MakeraPacket packet);
    void writeFrame(const MakeraPacket& packet);
    void writeBytes(const QByteArray& bytes);
    void writeNextPiece();
    void chatter();

    const SimOptions& m_options;
    PacketLog& m_log;
    QTcpSocket* m_socket;
    MakeraFrameParser m_parser;
    State m_state = State::Idle;

    QString m_name;
    QByteArray m_openingMD5;
    qint64 m_chunkCount = 0;
    qint64 m_chunkSize = 0;
    QList<quint32> m_order;
    qsizetype m_nextIndex = 0;
    quint32 m_requested = 0;
    qint64 m_chunksArrived = 0;
    bool m_viewRequestedAgain = false;
    MakeraPacket m_lastReply{MakeraPacketType::FileMD5, {}};
    // The upload as it arrives; moved to its name once complete and checked.
    QFile m_partial;
    qint64 m_contentSize = 0;
    std::vector<bool> m_received;
    // The file's leading chunks that are all here are hashed, each once, as soon as they are.
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    qint64 m_hashedChunks = 0;

    QByteArray m_pieces;
    QTimer m_pieceTimer;
    QTimer m_chatterTimer;
};

} // namespace tarnwick::sim
