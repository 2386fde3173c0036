#pragma once

#include <QMetaType>
#include <QString>

#include <cstdint>
#include <variant>

namespace tarnwick {

// The failure of an upload, as the user reads it.
class UploadError {
public:
    enum class Kind {
        Rejected,
        InvalidResponse,
        Cancelled,
        TimedOut
    };

    static UploadError rejected(QString message) { return {Kind::Rejected, std::move(message)}; }
    static UploadError invalidResponse(QString message) {
        return {Kind::InvalidResponse, std::move(message)};
    }
    static UploadError cancelled() { return {Kind::Cancelled, {}}; }
    static UploadError timedOut() { return {Kind::TimedOut, {}}; }

    Kind kind() const { return m_kind; }
    const QString& message() const { return m_message; }
    QString description() const;

    friend bool operator==(const UploadError&, const UploadError&) = default;

private:
    UploadError(Kind kind, QString message)
        : m_kind(kind)
        , m_message(std::move(message)) {}

    Kind m_kind;
    QString m_message;
};

// Why a chosen file cannot be a job file, or stopped being one while it was sent.
class JobFileError {
public:
    enum class Kind {
        UnsupportedExtension,
        NotARegularFile,
        ChangedWhileSending,
        ControlCharacterInName
    };

    static JobFileError unsupportedExtension(QString extension) {
        return {Kind::UnsupportedExtension, std::move(extension)};
    }
    static JobFileError notARegularFile() { return {Kind::NotARegularFile, {}}; }
    static JobFileError changedWhileSending() { return {Kind::ChangedWhileSending, {}}; }
    static JobFileError controlCharacterInName(QString fileName) {
        return {Kind::ControlCharacterInName, std::move(fileName)};
    }

    Kind kind() const { return m_kind; }
    QString description() const;

    friend bool operator==(const JobFileError&, const JobFileError&) = default;

private:
    JobFileError(Kind kind, QString subject)
        : m_kind(kind)
        , m_subject(std::move(subject)) {}

    Kind m_kind;
    // The extension or the file name that the description names.
    QString m_subject;
};

// A machine address or announcement that does not pass; the cases are tested in this order.
enum class DiscoveryPacketError {
    InvalidUTF8,
    InsufficientFields,
    InvalidAddress,
    InvalidPort
};

QString description(DiscoveryPacketError error);

// A frame that cannot be encoded or decoded.
class MakeraPacketError {
public:
    enum class Kind {
        InvalidHeader,
        InvalidFooter,
        InvalidLength,
        Oversized,
        UnknownType,
        Checksum,
        Truncated
    };

    static MakeraPacketError invalidHeader(quint16 word) { return {Kind::InvalidHeader, word}; }
    static MakeraPacketError invalidFooter(quint16 word) { return {Kind::InvalidFooter, word}; }
    static MakeraPacketError invalidLength(qint64 length) { return {Kind::InvalidLength, length}; }
    static MakeraPacketError oversized(qint64 length) { return {Kind::Oversized, length}; }
    static MakeraPacketError unknownType(quint8 type) { return {Kind::UnknownType, type}; }
    static MakeraPacketError checksum(quint16 expected, quint16 actual) {
        return {Kind::Checksum, 0, expected, actual};
    }
    static MakeraPacketError truncated() { return {Kind::Truncated, 0}; }

    Kind kind() const { return m_kind; }
    // The header or footer word, the length, or the type byte, by kind.
    qint64 value() const { return m_value; }
    quint16 expected() const { return m_expected; }
    quint16 actual() const { return m_actual; }
    QString description() const;

    friend bool operator==(const MakeraPacketError&, const MakeraPacketError&) = default;

private:
    MakeraPacketError(Kind kind, qint64 value, quint16 expected = 0, quint16 actual = 0)
        : m_kind(kind)
        , m_value(value)
        , m_expected(expected)
        , m_actual(actual) {}

    Kind m_kind;
    qint64 m_value;
    quint16 m_expected;
    quint16 m_actual;
};

// An error reported by Qt (socket, file, HTTP), carried with Qt's own message.
struct PlatformError {
    enum class Domain {
        Network,
        File,
        Http
    };

    Domain domain;
    int code;
    QString message;

    QString description() const { return message; }

    friend bool operator==(const PlatformError&, const PlatformError&) = default;
};

// The operation was cancelled by its owner rather than by the user's cancel of an upload.
struct CancellationError {
    QString description() const;

    friend bool operator==(const CancellationError&, const CancellationError&) = default;
};

// How far an upload had come when an error ended it: what the machine may hold, and so what the
// user is advised. It is not part of the error's identity.
enum class UploadStage {
    NotOpened,
    // The machine took the upload command: part of the file may have reached it.
    Opened,
    // Every chunk the machine asked for was sent: it may hold the whole file.
    EveryChunkSent
};

// Any failure of the program, keeping its type.
class Error {
public:
    using Variant = std::variant<UploadError, JobFileError, DiscoveryPacketError, MakeraPacketError,
                                 PlatformError, CancellationError>;

    Error()
        : m_value(CancellationError{}) {}
    template <typename T>
    requires std::is_constructible_v<Variant, T> Error(T value)
        : m_value(std::move(value)) {}

    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(m_value);
    }
    template <typename T>
    const T* get() const {
        return std::get_if<T>(&m_value);
    }
    const Variant& value() const { return m_value; }

    bool isUploadError(UploadError::Kind kind) const {
        const auto* upload = get<UploadError>();
        return upload && upload->kind() == kind;
    }

    // The text the user reads.
    QString description() const;

    UploadStage uploadStage() const { return m_uploadStage; }
    Error atUploadStage(UploadStage stage) const {
        Error error = *this;
        error.m_uploadStage = stage;
        return error;
    }

    friend bool operator==(const Error& a, const Error& b) { return a.m_value == b.m_value; }

private:
    Variant m_value;
    UploadStage m_uploadStage = UploadStage::NotOpened;
};

// What the user reads of a scan of the local network that failed with `error`.
QString discoveryFailureMessage(const Error& error);

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::Error)
