#include "cli/ProgressBar.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace tarnwick::cli {

namespace {

constexpr int barWidth = 30;

QString size(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

int percent(double fraction) {
    return int(std::floor(fraction * 100));
}

} // namespace

QString ProgressBar::line(const TransferProgress& progress) {
    const double fraction = progress.fraction();
    const int filled = int(std::lround(fraction * barWidth));
    QString text = u'[' + QString(filled, u'#') + QString(barWidth - filled, u'.') +
                   QStringLiteral("] ") + QStringLiteral("%1%").arg(percent(fraction), 3) +
                   QStringLiteral("  ") +
                   tr("%1 of %2").arg(size(progress.bytesSent), size(progress.totalBytes));
    switch (progress.phase) {
    case TransferProgress::Phase::Preparing:
        return text + QStringLiteral("  ") + tr("connecting");
    case TransferProgress::Phase::Uploading: {
        text += QStringLiteral("  ") + tr("%1/s").arg(size(qint64(progress.bytesPerSecond)));
        if (progress.bytesPerSecond > 0 && progress.bytesSent <= progress.totalBytes) {
            const auto seconds = qint64(std::ceil(double(progress.totalBytes - progress.bytesSent) /
                                                  progress.bytesPerSecond));
            QString left;
            if (seconds < 60)
                left = tr("%1 s left").arg(seconds);
            else if (seconds < 3600)
                left = tr("%1 min %2 s left").arg(seconds / 60).arg(seconds % 60);
            else
                left = tr("%1 h %2 min left").arg(seconds / 3600).arg(seconds % 3600 / 60);
            text += QStringLiteral("  ") + left;
        }
        return text;
    }
    case TransferProgress::Phase::Completed:
        return text + QStringLiteral("  ") + tr("done");
    case TransferProgress::Phase::Cancelled:
        return text + QStringLiteral("  ") + tr("cancelled");
    }
    return text;
}

QString ProgressBar::checkingLine(qint64 bytesChecked, qint64 totalBytes) {
    const double fraction = totalBytes > 0 ? double(bytesChecked) / double(totalBytes) : 0;
    return tr("Checking the file… %1 %").arg(percent(std::clamp(fraction, 0.0, 1.0)));
}

void ProgressBar::show(const TransferProgress& progress) {
    redraw(line(progress));
}

void ProgressBar::showChecking(qint64 bytesChecked, qint64 totalBytes) {
    redraw(checkingLine(bytesChecked, totalBytes));
}

void ProgressBar::redraw(const QString& text) {
    m_stream << '\r' << text;
    if (text.size() < m_lastWidth)
        m_stream << QString(m_lastWidth - text.size(), u' ');
    m_stream.flush();
    m_lastWidth = text.size();
}

void ProgressBar::finish() {
    if (m_lastWidth == 0)
        return;
    m_stream << '\n';
    m_stream.flush();
    m_lastWidth = 0;
}

} // namespace tarnwick::cli
