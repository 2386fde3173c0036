#include "sim/PacketLog.h"

namespace tarnwick::sim {

QString packetTypeName(MakeraPacketType type) {
    switch (type) {
    case MakeraPacketType::StatusResponse:
        return QStringLiteral("statusResponse");
    case MakeraPacketType::DiagnosticResponse:
        return QStringLiteral("diagnosticResponse");
    case MakeraPacketType::LoadInfo:
        return QStringLiteral("loadInfo");
    case MakeraPacketType::LoadFinished:
        return QStringLiteral("loadFinished");
    case MakeraPacketType::LoadError:
        return QStringLiteral("loadError");
    case MakeraPacketType::NormalInfo:
        return QStringLiteral("normalInfo");
    case MakeraPacketType::ControlSingle:
        return QStringLiteral("controlSingle");
    case MakeraPacketType::ControlMulti:
        return QStringLiteral("controlMulti");
    case MakeraPacketType::FileStart:
        return QStringLiteral("fileStart");
    case MakeraPacketType::FileMD5:
        return QStringLiteral("fileMD5");
    case MakeraPacketType::FileView:
        return QStringLiteral("fileView");
    case MakeraPacketType::FileData:
        return QStringLiteral("fileData");
    case MakeraPacketType::FileEnd:
        return QStringLiteral("fileEnd");
    case MakeraPacketType::FileCancel:
        return QStringLiteral("fileCancel");
    case MakeraPacketType::FileRetry:
        return QStringLiteral("fileRetry");
    }
    return QStringLiteral("unknown");
}

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
    m_file.write(packetTypeName(packet.type).toLatin1() + ' ' +
                 QByteArray::number(packet.payload.size()) + ' ' +
                 QByteArray::number(m_clock.nsecsElapsed() / 1000) + '\n');
    m_file.flush();
}

} // namespace tarnwick::sim
