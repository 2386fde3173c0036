#pragma once

#include "app/Machine.h"
#include "app/TransferProgress.h"

#include <QLocale>
#include <QString>

#include <optional>

namespace tarnwick::ui {

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

// "Upload complete" for a finished transfer, else the phase's name with a capital letter.
QString phaseTitle(TransferProgress::Phase phase);

QString statusWord(Machine::ConnectionStatus status);

// "Model unknown · 10.0.0.5:2222".
QString machineSubtitle(const Machine& machine);
QString machineAddress(const Machine& machine);

} // namespace tarnwick::ui
