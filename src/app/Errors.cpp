#include "app/Errors.h"

namespace tarnwick {

QString UploadError::description() const {
    switch (m_kind) {
    case Kind::Rejected:
        return QStringLiteral("The machine rejected the upload: ") + m_message;
    case Kind::InvalidResponse:
        return QStringLiteral("The machine returned an invalid response: ") + m_message;
    case Kind::Cancelled:
        return QStringLiteral("The upload was cancelled.");
    case Kind::TimedOut:
        if (!m_message.isEmpty())
            return QStringLiteral("The machine did not respond before the upload timed out. ") +
                   m_message;
        return QStringLiteral("The machine did not respond before the upload timed out.");
    }
    Q_UNREACHABLE();
    return {};
}

QString JobFileError::description() const {
    switch (m_kind) {
    case Kind::UnsupportedExtension:
        return QStringLiteral("The .") + m_extension +
               QStringLiteral(" extension is not supported. Choose an .nc, .cnc or .gcode file.");
    case Kind::NotARegularFile:
        return QStringLiteral("Please choose a regular file.");
    case Kind::ChangedWhileSending:
        return QStringLiteral("The job file changed while it was being sent.");
    }
    Q_UNREACHABLE();
    return {};
}

QString description(DiscoveryPacketError error) {
    switch (error) {
    case DiscoveryPacketError::InvalidUTF8:
        return QStringLiteral("The announcement is not valid UTF-8 text.");
    case DiscoveryPacketError::InsufficientFields:
        return QStringLiteral("The announcement has fewer than four fields.");
    case DiscoveryPacketError::InvalidAddress:
        return QStringLiteral("The address is not a valid IPv4 address.");
    case DiscoveryPacketError::InvalidPort:
        return QStringLiteral("The port is not a number from 1 to 65535.");
    }
    Q_UNREACHABLE();
    return {};
}

static QString hex(qint64 value, int digits) {
    return QStringLiteral("0x") +
           QString::number(value, 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

QString MakeraPacketError::description() const {
    switch (m_kind) {
    case Kind::InvalidHeader:
        return QStringLiteral("The machine sent a packet with an invalid header (%1).")
            .arg(hex(m_value, 4));
    case Kind::InvalidFooter:
        return QStringLiteral("The machine sent a packet with an invalid footer (%1).")
            .arg(hex(m_value, 4));
    case Kind::InvalidLength:
        return QStringLiteral("The machine sent a packet with an invalid length (%1).")
            .arg(m_value);
    case Kind::Oversized:
        return QStringLiteral("The packet is too large to send (length %1, at most 8200).")
            .arg(m_value);
    case Kind::UnknownType:
        return QStringLiteral("The machine sent a packet of unknown type %1.").arg(hex(m_value, 2));
    case Kind::Checksum:
        return QStringLiteral("The machine sent a packet with a wrong checksum (computed %1, "
                              "received %2).")
            .arg(hex(m_expected, 4), hex(m_actual, 4));
    case Kind::Truncated:
        return QStringLiteral("The machine sent a packet that was cut short.");
    }
    Q_UNREACHABLE();
    return {};
}

QString CancellationError::description() const {
    return QStringLiteral("The operation was cancelled.");
}

QString Error::description() const {
    return std::visit(
        [](const auto& error) -> QString {
            using T = std::decay_t<decltype(error)>;
            if constexpr (std::is_same_v<T, DiscoveryPacketError>)
                return tarnwick::description(error);
            else
                return error.description();
        },
        m_value);
}

} // namespace tarnwick
