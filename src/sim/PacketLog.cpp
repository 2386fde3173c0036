#include "sim/PacketLog.h"

#include "app/RawValues.h"

namespace tarnwick::sim {

PacketLog::PacketLog(const QString& path)
    : m_file(path) {
    m_clock.start();
    if (!path.isEmpty() && !m_file.open(QIODevice::WriteOnly | QIODevice::Append))
        qWarning("tarnwick-sim: cannot write the log %s: %s", qUtf8Printable(path),
                 qUtf8Printable(m_file.errorString()));
}

void PacketLog::record(const MakeraPacket& packet) {
    if (!m_file.isOpen())
        return;
    m_file.write(rawValue(packet.type).toLatin1() + ' ' +
                 QByteArray::number(packet.payload.size()) + ' ' +
                 QByteArray::number(m_clock.nsecsElapsed() / 1000) + '\n');
    m_file.flush();
}

} // namespace tarnwick::sim
