#include "cli/ExitCode.h"

namespace tarnwick::cli {

namespace {

ExitCode uploadExitCode(const UploadError& error, UploadReach reach) {
    switch (error.kind()) {
    case UploadError::Kind::Rejected:
        return Refused;
    case UploadError::Kind::InvalidResponse:
        return Failure;
    case UploadError::Kind::Cancelled:
        return Cancelled;
    case UploadError::Kind::TimedOut:
        return reach.connected ? TimedOut : Unreachable;
    }
    return Failure;
}

ExitCode jobFileExitCode(const JobFileError& error) {
    return error.kind() == JobFileError::Kind::ChangedWhileSending ? FileChanged : Usage;
}

ExitCode platformExitCode(const PlatformError& error, UploadReach reach) {
    switch (error.domain) {
    case PlatformError::Domain::Network:
        return reach.transferring ? Failure : Unreachable;
    case PlatformError::Domain::File:
        return FileChanged;
    case PlatformError::Domain::Http:
        return Failure;
    }
    return Failure;
}

} // namespace

ExitCode exitCodeFor(const Error& error, UploadReach reach) {
    // Once the machine took the upload command it was reached, whatever breaks the link later.
    if (error.uploadStage() != UploadStage::NotOpened)
        reach = {true, true};
    if (const auto* upload = error.get<UploadError>())
        return uploadExitCode(*upload, reach);
    if (const auto* file = error.get<JobFileError>())
        return jobFileExitCode(*file);
    if (const auto* platform = error.get<PlatformError>())
        return platformExitCode(*platform, reach);
    if (error.is<DiscoveryPacketError>())
        return Usage;
    if (error.is<CancellationError>())
        return Cancelled;
    return Failure;
}

QString kindName(ExitCode code) {
    switch (code) {
    case Success:
        return {};
    case Failure:
        return QStringLiteral("failed");
    case Usage:
        return QStringLiteral("usage");
    case Unreachable:
        return QStringLiteral("unreachable");
    case Refused:
        return QStringLiteral("refused");
    case TimedOut:
        return QStringLiteral("timeout");
    case Cancelled:
        return QStringLiteral("cancelled");
    case Duplicate:
        return QStringLiteral("duplicate");
    case FileChanged:
        return QStringLiteral("file");
    }
    return QStringLiteral("failed");
}

} // namespace tarnwick::cli
