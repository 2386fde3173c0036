#include "sim/SimConnection.h"

#include "app/RawValues.h"
#include "app/StrictUtf8.h"
#include "protocol/CRC16CCITT.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <thread>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

namespace tarnwick::sim {

namespace {

constexpr qsizetype pieceSize = 3;
constexpr std::chrono::microseconds wakeUpAllowance{200};
const QByteArray noiseBytes = QByteArrayLiteral("\x00\x11\x55\xAA\x86");
const QByteArray uploadPrefix = QByteArrayLiteral("upload /sd/gcodes/");

// The machine's command line carries these characters as the control bytes 1 to 5. Written out
// here, not borrowed from the uploader, so that a wrong table there shows as a wrong name.
QString machineFilename(QString escaped) {
    static constexpr char16_t plain[] = u" ?*!~";
    for (char16_t control = 1; control <= 5; ++control)
        escaped.replace(QChar(control), QChar(plain[control - 1]));
    return escaped;
}

void say(const QString& text) {
    std::fprintf(stderr, "tarnwick-sim: %s\n", qUtf8Printable(text));
}

MakeraPacket chunkRequest(quint32 number) {
    QByteArray payload(4, Qt::Uninitialized);
    qToBigEndian(number, payload.data());
    return {MakeraPacketType::FileData, payload};
}

} // namespace

SimConnection::SimConnection(QTcpSocket* socket, const SimOptions& options, PacketLog& log,
                             QObject* parent)
    : QObject(parent)
    , m_options(options)
    , m_log(log)
    , m_socket(socket)
    , m_pieceTimer(this)
    , m_chatterTimer(this) {
    m_socket->setParent(this);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &SimConnection::readAvailable);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        if (m_state != State::Idle)
            endUpload();
        deleteLater();
    });
    connect(&m_pieceTimer, &QTimer::timeout, this, &SimConnection::writeNextPiece);
    m_pieceTimer.setInterval(1);
    connect(&m_chatterTimer, &QTimer::timeout, this, &SimConnection::chatter);
    if (m_options.chatterMs > 0)
        m_chatterTimer.start(m_options.chatterMs);
}

void SimConnection::readAvailable() {
    m_parser.append(m_socket->readAll());
    while (std::optional<MakeraPacket> packet = m_parser.next()) {
        m_log.record(*packet);
        handle(*packet);
        if (!m_socket->isOpen())
            return;
    }
}

void SimConnection::handle(const MakeraPacket& packet) {
    switch (packet.type) {
    case MakeraPacketType::ControlMulti:
        return answerProbe(packet);
    case MakeraPacketType::FileStart:
        if (m_state != State::Idle)
            return refuse(QStringLiteral("a second file-start arrived during an upload"));
        return startUpload(packet.payload);
    case MakeraPacketType::FileCancel:
        if (m_state != State::Idle) {
            say(QStringLiteral("the client cancelled the upload of %1").arg(m_name));
            endUpload();
        }
        return;
    case MakeraPacketType::FileMD5:
        if (m_state == State::AwaitingOpeningMD5)
            return openingMD5Arrived(packet);
        if (m_state == State::AwaitingMD5)
            return md5Arrived(packet);
        if (m_state == State::AwaitingRepeat)
            return repeatArrived(packet);
        break;
    case MakeraPacketType::FileView:
        if (m_state == State::AwaitingView)
            return viewArrived(packet);
        if (m_state == State::AwaitingRepeat)
            return repeatArrived(packet);
        break;
    case MakeraPacketType::FileData:
        if (m_state == State::AwaitingChunk)
            return chunkArrived(packet);
        if (m_state == State::AwaitingRepeat)
            return repeatArrived(packet);
        break;
    default:
        break;
    }
    if (m_state != State::Silent)
        say(QStringLiteral("ignored a %1 packet that has no place here")
                .arg(rawValue(packet.type)));
}

void SimConnection::answerProbe(const MakeraPacket& packet) {
    if (packet.payload != "ftype") {
        say(QStringLiteral("ignored a control command: this machine starts no jobs"));
        return;
    }
    if (m_options.fileType)
        request({MakeraPacketType::NormalInfo,
                 QByteArrayLiteral("ftype = ") + m_options.fileType->toUtf8() + '\n'});
}

void SimConnection::startUpload(const QByteArray& command) {
    if (!m_options.chatterDuringUpload)
        m_chatterTimer.stop();
    m_state = State::AwaitingOpeningMD5;
    m_name.clear();
    m_chunksArrived = 0;
    m_viewRequestedAgain = false;
    m_hash.reset();
    m_hashedChunks = 0;

    const std::optional<QString> decoded =
        command.startsWith(uploadPrefix) && command.endsWith('\n')
            ? strictUtf8(QByteArrayView(command).sliced(uploadPrefix.size()).chopped(1))
            : std::nullopt;
    const QString name = decoded ? machineFilename(*decoded) : QString();
    if (name.isEmpty())
        return refuse(QStringLiteral("not an upload command: %1")
                          .arg(QString::fromLatin1(command.toPercentEncoding(" /"))));

    // The name must stay inside the folder, whatever it holds.
    const QString folder = QDir::cleanPath(m_options.storeDirectory + QStringLiteral("/gcodes"));
    const QString path = QDir::cleanPath(folder + QLatin1Char('/') + name);
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
        name.contains(QChar(0)) || name == QLatin1String(".") || name == QLatin1String("..") ||
        QFileInfo(path).absolutePath() != QFileInfo(folder).absoluteFilePath())
        return refuse(QStringLiteral("the name %1 would leave the folder").arg(name));
    m_name = name;
}

void SimConnection::openingMD5Arrived(const MakeraPacket& packet) {
    m_openingMD5 = packet.payload;
    if (m_options.retryAfter == 0) {
        m_lastReply = packet;
        m_state = State::AwaitingRepeat;
        return request({MakeraPacketType::FileRetry, {}});
    }
    m_state = State::AwaitingMD5;
    request({MakeraPacketType::FileMD5, {}});
}

void SimConnection::md5Arrived(const MakeraPacket& packet) {
    if (packet.payload != m_openingMD5)
        return refuse(QStringLiteral("the MD5 reply differs from the opening MD5"));
    m_state = State::AwaitingView;
    request({MakeraPacketType::FileView, {}});
}

void SimConnection::viewArrived(const MakeraPacket& packet) {
    if (packet.payload.size() != 6)
        return refuse(QStringLiteral("the view reply is not 6 bytes"));
    m_chunkCount = qFromBigEndian<quint32>(packet.payload.constData());
    m_chunkSize = qFromBigEndian<quint16>(packet.payload.constData() + 4);
    if (m_chunkCount == 0 || m_chunkSize == 0)
        return refuse(QStringLiteral("the view reply announces no data"));

    m_order.resize(m_chunkCount);
    std::iota(m_order.begin(), m_order.end(), quint32(1));
    if (m_options.shuffleChunks) {
        // Every other chunk from the last down, then the rest: never in order, always complete.
        std::stable_partition(m_order.begin(), m_order.end(), [](quint32 n) { return n % 2 == 0; });
        std::reverse(m_order.begin(), m_order.end());
    }
    m_nextIndex = 0;
    if (qint64(m_received.size()) != m_chunkCount) {
        const QString folder = m_options.storeDirectory + QStringLiteral("/partial");
        m_partial.close();
        m_partial.setFileName(folder + QLatin1Char('/') + m_name);
        if (!QDir().mkpath(folder) || !m_partial.open(QIODevice::ReadWrite | QIODevice::Truncate))
            return refuse(
                QStringLiteral("cannot store %1: %2").arg(m_name, m_partial.errorString()));
        m_received.assign(size_t(m_chunkCount), false);
    }
    m_state = State::AwaitingChunk;
    if (m_chunksArrived == 0 && applyFaults(0))
        return;
    requestNextChunk();
}

void SimConnection::chunkArrived(const MakeraPacket& packet) {
    const QByteArray& payload = packet.payload;
    const bool isLast = m_requested == m_chunkCount;
    if (payload.size() < 5 || qFromBigEndian<quint32>(payload.constData()) != m_requested ||
        (!isLast && payload.size() - 4 != m_chunkSize) || payload.size() - 4 > m_chunkSize)
        return refuse(QStringLiteral("the reply for chunk %1 is wrong").arg(m_requested));

    const qint64 index = m_requested - 1;
    if (!storeChunk(index, QByteArrayView(payload).sliced(4)))
        return refuse(QStringLiteral("cannot store %1: %2").arg(m_name, m_partial.errorString()));
    if (isLast)
        m_contentSize = index * m_chunkSize + payload.size() - 4;
    if (index == m_hashedChunks) {
        m_hash.addData(QByteArrayView(payload).sliced(4));
        ++m_hashedChunks;
        hashStoredChunks();
    }
    m_lastReply = packet;
    ++m_chunksArrived;
    if (applyFaults(m_chunksArrived))
        return;
    requestNextChunk();
}

void SimConnection::repeatArrived(const MakeraPacket& packet) {
    if (packet != m_lastReply)
        return refuse(QStringLiteral("the repeated packet differs from the last reply"));
    if (m_chunksArrived == 0 && packet.type == MakeraPacketType::FileMD5) {
        m_state = State::AwaitingMD5;
        return request({MakeraPacketType::FileMD5, {}});
    }
    m_state = State::AwaitingChunk;
    requestNextChunk();
}

bool SimConnection::storeChunk(qint64 index, QByteArrayView bytes) {
    if (!m_partial.seek(index * m_chunkSize) ||
        m_partial.write(bytes.data(), bytes.size()) != bytes.size())
        return false;
    m_received[size_t(index)] = true;
    return true;
}

// Chunks that came ahead of a gap are read back once the gap is filled.
void SimConnection::hashStoredChunks() {
    while (m_hashedChunks < m_chunkCount && m_received[size_t(m_hashedChunks)]) {
        const qint64 start = m_hashedChunks * m_chunkSize;
        const qint64 end = m_hashedChunks + 1 == m_chunkCount ? m_contentSize : start + m_chunkSize;
        if (!m_partial.seek(start))
            return;
        m_hash.addData(m_partial.read(end - start));
        ++m_hashedChunks;
    }
}

void SimConnection::resetConnection() {
    // No linger: closing sends a reset instead of an orderly end.
    const linger noLinger{1, 0};
#ifdef Q_OS_WIN
    ::setsockopt(SOCKET(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER,
                 reinterpret_cast<const char*>(&noLinger), sizeof noLinger);
#else
    ::setsockopt(int(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &noLinger,
                 sizeof noLinger);
#endif
    m_socket->abort();
}

bool SimConnection::applyFaults(qint64 chunks) {
    if (m_options.cancelAfter == chunks) {
        say(QStringLiteral("cancelling after %1 chunks").arg(chunks));
        request({MakeraPacketType::FileCancel, {}});
        endUpload();
        return true;
    }
    if (m_options.silentAfter == chunks) {
        say(QStringLiteral("falling silent after %1 chunks").arg(chunks));
        m_state = State::Silent;
        return true;
    }
    if (m_options.closeAfter == chunks) {
        say(QStringLiteral("closing the connection after %1 chunks").arg(chunks));
        m_socket->close();
        return true;
    }
    if (m_options.resetAfter == chunks) {
        say(QStringLiteral("resetting the connection after %1 chunks").arg(chunks));
        resetConnection();
        return true;
    }
    if (m_options.badChunkAfter == chunks) {
        say(QStringLiteral("asking for chunk %1 of %2").arg(m_chunkCount + 1).arg(m_chunkCount));
        m_requested = quint32(m_chunkCount + 1);
        request(chunkRequest(m_requested));
        return true;
    }
    if (chunks > 0 && m_options.retryAfter == chunks) {
        m_state = State::AwaitingRepeat;
        request({MakeraPacketType::FileRetry, {}});
        return true;
    }
    if (chunks > 0 && m_options.viewAgainAfter == chunks && !m_viewRequestedAgain) {
        m_viewRequestedAgain = true;
        m_state = State::AwaitingView;
        request({MakeraPacketType::FileView, {}});
        return true;
    }
    return false;
}

void SimConnection::requestNextChunk() {
    while (m_nextIndex < m_order.size() && m_received[size_t(m_order[m_nextIndex] - 1)] &&
           !m_viewRequestedAgain)
        ++m_nextIndex;
    if (m_nextIndex >= m_order.size())
        return finishUpload();
    m_requested = m_order[m_nextIndex++];
    request(chunkRequest(m_requested));
}

void SimConnection::finishUpload() {
    hashStoredChunks();
    if (m_hashedChunks != m_chunkCount || m_hash.result().toHex() != m_openingMD5)
        return refuse(QStringLiteral("the file's MD5 does not match"));

    const QString folder = m_options.storeDirectory + QStringLiteral("/gcodes");
    const QString path = folder + QLatin1Char('/') + m_name;
    m_partial.close();
    if (!QDir().mkpath(folder) || (QFile::exists(path) && !QFile::remove(path)) ||
        !m_partial.rename(path)) {
        const QString reason = m_partial.errorString();
        m_partial.remove();
        return refuse(QStringLiteral("cannot store %1: %2").arg(m_name, reason));
    }
    say(QStringLiteral("stored %1 (%2 bytes)").arg(m_name).arg(m_contentSize));
    request({MakeraPacketType::FileEnd, {}});
    endUpload();
}

void SimConnection::refuse(const QString& reason) {
    say(QStringLiteral("refused the upload: %1").arg(reason));
    // Nothing of the upload is left once the client reads the cancel packet.
    endUpload();
    request({MakeraPacketType::FileCancel, {}});
}

void SimConnection::endUpload() {
    m_state = State::Idle;
    // What is left here is an upload that did not complete.
    if (m_partial.isOpen())
        m_partial.remove();
    m_partial.setFileName(QString());
    m_received.clear();
    m_contentSize = 0;
    m_chunkCount = 0;
    if (m_options.chatterMs > 0)
        m_chatterTimer.start(m_options.chatterMs);
    Q_EMIT uploadEnded();
}

void SimConnection::request(MakeraPacket packet) {
    if (m_options.latencyMs <= 0)
        return writeFrame(packet);
    // Event-loop timers fire up to a millisecond late and a sleeping thread wakes a little late
    // too: the last stretch is slept and its final moments spun, so that the latency is what was
    // asked for, also over thousands of requests of a few milliseconds each.
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(m_options.latencyMs);
    QTimer::singleShot(m_options.latencyMs - 1, Qt::PreciseTimer, this,
                       [this, deadline, packet = std::move(packet)] {
                           std::this_thread::sleep_until(deadline - wakeUpAllowance);
                           while (std::chrono::steady_clock::now() < deadline) {
                           }
                           writeFrame(packet);
                       });
}

void SimConnection::writeFrame(const MakeraPacket& packet) {
    const Result<QByteArray> frame = packet.encoded();
    if (!frame)
        return;
    QByteArray bytes;
    if (m_options.noise)
        bytes += noiseBytes;
    if (m_options.unknownFrames) {
        QByteArray unknown = MakeraPacket{MakeraPacketType::NormalInfo, "??"}.encoded().value();
        unknown[4] = char(0x91);
        const quint16 sum = CRC16CCITT::checksum(QByteArrayView(unknown).sliced(2, 6));
        qToBigEndian(sum, unknown.data() + 8);
        bytes += unknown;
    }
    if (m_options.badChecksumFrames) {
        QByteArray damaged = frame.value();
        damaged[damaged.size() - 3] = char(damaged[damaged.size() - 3] ^ 0x5A);
        bytes += damaged;
    }
    bytes += frame.value();
    writeBytes(bytes);
}

void SimConnection::writeBytes(const QByteArray& bytes) {
    if (!m_socket->isOpen())
        return;
    if (!m_options.splitWrites) {
        m_socket->write(bytes);
        m_socket->flush();
        return;
    }
    m_pieces += bytes;
    if (!m_pieceTimer.isActive())
        m_pieceTimer.start();
}

void SimConnection::writeNextPiece() {
    if (m_pieces.isEmpty() || !m_socket->isOpen()) {
        m_pieceTimer.stop();
        return;
    }
    m_socket->write(m_pieces.left(pieceSize));
    m_socket->flush();
    m_pieces.remove(0, pieceSize);
}

void SimConnection::chatter() {
    if (m_state == State::Idle || m_options.chatterDuringUpload)
        writeFrame({MakeraPacketType::NormalInfo, QByteArrayLiteral("ok\n")});
}

} // namespace tarnwick::sim
