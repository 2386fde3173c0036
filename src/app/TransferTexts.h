#pragma once

#include "app/TransferProgress.h"

#include <QLocale>
#include <QString>

#include <optional>

// Sizes, rates and times the way both the app and the command-line tool show them.
namespace tarnwick {

// A byte count the way file managers show sizes: decimal units, such as "1.2 MB".
QString byteCount(qint64 bytes, const QLocale& locale = QLocale());

// A fraction from 0 to 1 as a whole percentage, such as "50%".
QString percentText(double fraction, const QLocale& locale = QLocale());

// The rate followed by "/s", or nothing when there is no rate to show: zero, negative, not
// finite, or too large for a signed 64-bit byte count.
std::optional<QString> rateText(double bytesPerSecond, const QLocale& locale = QLocale());

// An estimate of the time the rest of the transfer takes, such as "About 3 min left"; nothing
// when there is no usable rate or nothing is left.
std::optional<QString> timeLeftText(const TransferProgress& progress);

} // namespace tarnwick
