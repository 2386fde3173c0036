#include "app/TransferProgress.h"

#include <algorithm>

namespace tarnwick {

double TransferProgress::fraction() const {
    if (totalBytes >= 1)
        return std::clamp(double(bytesSent) / double(totalBytes), 0.0, 1.0);
    return phase == Phase::Completed ? 1.0 : 0.0;
}

std::optional<TransferProgress::Phase> phaseFromRawValue(const QString& text) {
    return enumFromRawValue<TransferProgress::Phase>(text);
}

} // namespace tarnwick
