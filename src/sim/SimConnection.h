#pragma once

#include "protocol/MakeraFrameParser.h"
#include "protocol/MakeraPacket.h"
#include "sim/PacketLog.h"
#include "sim/SimOptions.h"

#include <QBitArray>
#include <QCryptographicHash>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

namespace tarnwick::sim {

// One client connection to the simulated machine. Like a controller it drives an upload itself:
// after the file-start and MD5 packets it asks for the MD5, the view and every chunk, checks the
// file's MD5, stores it and reports the end of the file. It never starts a job.
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
    bool applyFaults(int chunks);
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
    int m_chunksArrived = 0;
    bool m_viewRequestedAgain = false;
    MakeraPacket m_lastReply{MakeraPacketType::FileMD5, {}};
    QByteArray m_content;
    qint64 m_contentSize = 0;
    QBitArray m_received;
    // Chunks that arrive in order are hashed as they come; the rest at the end.
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    qint64 m_hashedChunks = 0;

    QByteArray m_pieces;
    QTimer m_pieceTimer;
    QTimer m_chatterTimer;
};

} // namespace tarnwick::sim
