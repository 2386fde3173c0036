#include "app/Errors.h"

#include <QCoreApplication>

namespace tarnwick {

QString UploadError::description() const {
    switch (m_kind) {
    case Kind::Rejected:
        return QCoreApplication::translate("tarnwick::UploadError",
                                           "The machine rejected the upload: %1")
            .arg(m_message);
    case Kind::InvalidResponse:
        return QCoreApplication::translate("tarnwick::UploadError",
                                           "The machine returned an invalid response: %1")
            .arg(m_message);
    case Kind::Cancelled:
        return QCoreApplication::translate("tarnwick::UploadError", "The upload was cancelled.");
    case Kind::TimedOut:
        return QCoreApplication::translate(
            "tarnwick::UploadError", "The machine did not respond before the upload timed out.");
    }
    Q_UNREACHABLE();
    return {};
}

QString JobFileError::description() const {
    switch (m_kind) {
    case Kind::UnsupportedExtension:
        return QCoreApplication::translate(
                   "tarnwick::JobFileError",
                   "The .%1 extension is not supported. Choose an .nc, .cnc or .gcode file.")
            .arg(m_subject);
    case Kind::NotARegularFile:
        return QCoreApplication::translate("tarnwick::JobFileError",
                                           "Please choose a regular file.");
    case Kind::ChangedWhileSending:
        return QCoreApplication::translate("tarnwick::JobFileError",
                                           "The job file changed while it was being sent.");
    case Kind::ControlCharacterInName:
        return QCoreApplication::translate("tarnwick::JobFileError",
                                           "The file name “%1” contains a control character, "
                                           "which the machine cannot take. Rename the file.")
            .arg(m_subject);
    }
    Q_UNREACHABLE();
    return {};
}

QString description(DiscoveryPacketError error) {
    switch (error) {
    case DiscoveryPacketError::InvalidUTF8:
        return QCoreApplication::translate("tarnwick::DiscoveryPacketError",
                                           "The announcement is not valid UTF-8 text.");
    case DiscoveryPacketError::InsufficientFields:
        return QCoreApplication::translate("tarnwick::DiscoveryPacketError",
                                           "The announcement has fewer than four fields.");
    case DiscoveryPacketError::InvalidAddress:
        return QCoreApplication::translate("tarnwick::DiscoveryPacketError",
                                           "The address is not a valid IPv4 address.");
    case DiscoveryPacketError::InvalidPort:
        return QCoreApplication::translate("tarnwick::DiscoveryPacketError",
                                           "The port is not a number from 1 to 65535.");
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
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet with an invalid header (%1).")
            .arg(hex(m_value, 4));
    case Kind::InvalidFooter:
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet with an invalid footer (%1).")
            .arg(hex(m_value, 4));
    case Kind::InvalidLength:
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet with an invalid length (%1).")
            .arg(m_value);
    case Kind::Oversized:
        return QCoreApplication::translate(
                   "tarnwick::MakeraPacketError",
                   "The packet is too large to send (length %1, at most 8200).")
            .arg(m_value);
    case Kind::UnknownType:
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet of unknown type %1.")
            .arg(hex(m_value, 2));
    case Kind::Checksum:
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet with a wrong checksum "
                                           "(computed %1, received %2).")
            .arg(hex(m_expected, 4), hex(m_actual, 4));
    case Kind::Truncated:
        return QCoreApplication::translate("tarnwick::MakeraPacketError",
                                           "The machine sent a packet that was cut short.");
    }
    Q_UNREACHABLE();
    return {};
}

QString CancellationError::description() const {
    return QCoreApplication::translate("tarnwick::CancellationError",
                                       "The operation was cancelled.");
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

QString discoveryFailureMessage(const Error& error) {
    return QCoreApplication::translate("tarnwick::Discovery", "Discovery failed: %1")
        .arg(error.description());
}

} // namespace tarnwick
