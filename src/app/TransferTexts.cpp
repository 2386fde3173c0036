#include "app/TransferTexts.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnwick {

namespace {

// Free functions have no tr() of their own; a class that only declares the context gives them one
// that the catalogue tools read.
class TransferTexts {
    Q_DECLARE_TR_FUNCTIONS(tarnwick::TransferTexts)
};

} // namespace

QString byteCount(qint64 bytes, const QLocale& locale) {
    if (bytes > -1000 && bytes < 1000) {
        //: A byte count below one kilobyte; %1 is the number.
        return (bytes == 1 || bytes == -1 ? TransferTexts::tr("%1 byte")
                                          : TransferTexts::tr("%1 bytes"))
            .arg(locale.toString(bytes));
    }
    static const std::array<const char*, 6> units{"kB", "MB", "GB", "TB", "PB", "EB"};
    // Whole kilobytes; from megabytes up one decimal while the number has fewer than three
    // digits ("1.2 MB", "48.3 GB", "220 MB"). A value that would round up to 1000 moves on to
    // the next unit.
    double value = std::abs(double(bytes)) / 1000;
    size_t unit = 0;
    int precision = 0;
    for (;;) {
        precision = unit >= 1 && value < 99.95 ? 1 : 0;
        const double shown = std::round(value * (precision ? 10 : 1)) / (precision ? 10 : 1);
        if (shown < 1000 || unit + 1 == units.size())
            break;
        value /= 1000;
        ++unit;
    }
    //: A byte count in a decimal unit: %1 is the number, %2 the unit such as "MB".
    return TransferTexts::tr("%1 %2").arg((bytes < 0 ? locale.negativeSign() : QString()) +
                                              locale.toString(value, 'f', precision),
                                          QLatin1String(units[unit]));
}

QString percentText(double fraction, const QLocale& locale) {
    const double clamped = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
    return locale.toString(std::floor(clamped * 100.0 + 0.5), 'f', 0) + locale.percent();
}

std::optional<QString> rateText(double bytesPerSecond, const QLocale& locale) {
    // 2^63 is the first double that no longer fits a qint64.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(bytesPerSecond) || bytesPerSecond <= 0 || bytesPerSecond >= limit)
        return std::nullopt;
    //: A transfer rate: %1 is a byte count such as "48 kB".
    return TransferTexts::tr("%1/s").arg(byteCount(static_cast<qint64>(bytesPerSecond), locale));
}

std::optional<QString> timeLeftText(const TransferProgress& progress) {
    const double rate = progress.bytesPerSecond;
    const qint64 remaining = progress.totalBytes - progress.bytesSent;
    if (progress.phase != TransferProgress::Phase::Uploading || !rateText(rate) || remaining <= 0)
        return std::nullopt;
    const double seconds = static_cast<double>(remaining) / rate;
    if (!std::isfinite(seconds) || seconds > 360'000)
        return std::nullopt;
    if (seconds < 60)
        return TransferTexts::tr("About %1 s left").arg(std::max(1, int(std::ceil(seconds))));
    const int minutes = int(std::ceil(seconds / 60));
    if (minutes < 60)
        return TransferTexts::tr("About %1 min left").arg(minutes);
    return TransferTexts::tr("About %1 h %2 min left").arg(minutes / 60).arg(minutes % 60);
}

} // namespace tarnwick
