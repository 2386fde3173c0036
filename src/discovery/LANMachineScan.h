#pragma once

#include "app/Services.h"

#include <QByteArray>
#include <QSet>

#include <chrono>
#include <optional>

class QTimer;
class QUdpSocket;

namespace tarnwick {

// One scan: listens for announcements on a UDP port for a given time and reports each machine
// once, on its first valid announcement. It keeps one key per machine reported and no datagram.
class LANMachineScan : public MachineScan {
    Q_OBJECT

public:
    LANMachineScan(quint16 port, std::chrono::milliseconds duration, QObject* parent);

    void cancel() override;

private:
    void readPendingDatagrams();
    void handleAnnouncement(QByteArrayView payload);
    void handleSocketError();
    void stopListening();
    void end(const std::optional<Error>& failure);
    void endSoon(const Error& failure);

    QUdpSocket* m_socket;
    QTimer* m_listeningTime;
    bool m_listening = false;
    // address:port of every machine reported so far.
    QSet<QString> m_endpoints;
    // Holds the largest UDP payload, so no datagram is cut; reused for every datagram, so a
    // flood of announcements needs no buffer of its own.
    static constexpr qsizetype largestDatagram = 65536;
    static constexpr int receiveBufferSize = 4 << 20;
    QByteArray m_buffer;
};

} // namespace tarnwick
