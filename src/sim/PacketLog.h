#pragma once

#include "protocol/MakeraPacket.h"

#include <QElapsedTimer>
#include <QFile>

namespace tarnwick::sim {

// One line per packet received, "TYPE PAYLOAD-BYTES MICROSECONDS" (the arrival, counted from the
// log's start on a monotonic clock), flushed at once so that a reader sees every packet that
// arrived before it looked. Does nothing without a file.
class PacketLog {
public:
    explicit PacketLog(const QString& path);

    bool isOpen() const { return m_file.isOpen(); }
    void record(const MakeraPacket& packet);

private:
    QFile m_file;
    QElapsedTimer m_clock;
};

} // namespace tarnwick::sim
