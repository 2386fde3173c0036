#include "app/TransferProgress.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

constexpr std::array phaseRawValues{
    std::pair{TransferProgress::Phase::Preparing, "preparing"},
    std::pair{TransferProgress::Phase::Uploading, "uploading"},
    std::pair{TransferProgress::Phase::Completed, "completed"},
    std::pair{TransferProgress::Phase::Cancelled, "cancelled"},
};

} // namespace

double TransferProgress::fraction() const {
    if (totalBytes >= 1)
        return std::clamp(double(bytesSent) / double(totalBytes), 0.0, 1.0);
    return phase == Phase::Completed ? 1.0 : 0.0;
}

QString rawValue(TransferProgress::Phase phase) {
    for (const auto& [value, text] : phaseRawValues) {
        if (value == phase)
            return QLatin1String(text);
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<TransferProgress::Phase> phaseFromRawValue(const QString& text) {
    for (const auto& [value, raw] : phaseRawValues) {
        if (text == QLatin1String(raw))
            return value;
    }
    return std::nullopt;
}

} // namespace tarnwick
