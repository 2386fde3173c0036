#include "app/UploadAdvice.h"

#include <QCoreApplication>

namespace tarnwick {

namespace {

// The link to the machine failed or the machine stopped taking part: what it holds depends on
// how far the upload had come.
bool isLinkFailure(const Error& error) {
    if (const auto* platform = error.get<PlatformError>())
        return platform->domain == PlatformError::Domain::Network;
    return error.is<MakeraPacketError>() ||
           error.isUploadError(UploadError::Kind::InvalidResponse) ||
           error.isUploadError(UploadError::Kind::TimedOut);
}

} // namespace

QString uploadAdvice(const Error& error) {
    // The machine said no, or its rules did: the failure's text says why.
    if (error.isUploadError(UploadError::Kind::Rejected))
        return {};
    // Only the end packet may have been lost, whatever ended the upload, a cancel included.
    if (error.uploadStage() == UploadStage::EveryChunkSent)
        return QCoreApplication::translate(
            "tarnwick::UploadAdvice",
            "Every part of the file had been sent when the upload ended. The "
            "machine may have received the whole file: check it on the machine "
            "before sending it again.");
    if (isLinkFailure(error)) {
        if (error.uploadStage() == UploadStage::Opened)
            return QCoreApplication::translate(
                "tarnwick::UploadAdvice",
                "The upload ended before the whole file was sent, so the machine "
                "does not have all of it. Check that the machine is switched on "
                "and ready, then send the file again.");
        return QCoreApplication::translate(
            "tarnwick::UploadAdvice",
            "The machine could not be reached, or the connection to it ended "
            "before the file was sent. Check that the machine is switched on and "
            "on the same network as this computer, then try again.");
    }
    if (const auto* file = error.get<JobFileError>();
        file && file->kind() == JobFileError::Kind::ChangedWhileSending)
        return QCoreApplication::translate(
            "tarnwick::UploadAdvice",
            "Send the file again once it is saved and no program is writing it.");
    if (const auto* platform = error.get<PlatformError>();
        platform && platform->domain == PlatformError::Domain::File)
        return QCoreApplication::translate(
            "tarnwick::UploadAdvice",
            "Check that the file is still there and can be read, then try again.");
    return {};
}

} // namespace tarnwick
