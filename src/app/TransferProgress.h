#pragma once

#include "app/RawValues.h"

#include <QMetaType>
#include <QObject>
#include <QString>

#include <optional>

namespace tarnwick {

// One value of an upload's progress stream.
struct TransferProgress {
    Q_GADGET

public:
    enum class Phase {
        Preparing,
        Uploading,
        Completed,
        Cancelled
    };
    Q_ENUM(Phase)

    Phase phase = Phase::Preparing;
    qint64 bytesSent = 0;
    qint64 totalBytes = 0;
    // Average rate since the transfer loop began; 0 where no rate is measured.
    double bytesPerSecond = 0;

    // From 0 to 1, for a progress bar.
    double fraction() const;

    friend bool operator==(const TransferProgress&, const TransferProgress&) = default;
};

std::optional<TransferProgress::Phase> phaseFromRawValue(const QString& text);

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::TransferProgress)
