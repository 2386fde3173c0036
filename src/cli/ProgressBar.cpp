#include "cli/ProgressBar.h"

#include <QLocale>

#include <cmath>

namespace tarnwick::cli {

namespace {

constexpr int barWidth = 30;

QString size(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

QString duration(double seconds) {
    const qint64 whole = qint64(std::ceil(seconds));
    if (whole < 60)
        return QStringLiteral("%1 s").arg(whole);
    if (whole < 3600)
        return QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
    return QStringLiteral("%1 h %2 min").arg(whole / 3600).arg(whole % 3600 / 60);
}

} // namespace

QString ProgressBar::line(const TransferProgress& progress) {
    const double fraction = progress.fraction();
    const int filled = int(std::lround(fraction * barWidth));
    QString text = QLatin1Char('[') + QString(filled, QLatin1Char('#')) +
                   QString(barWidth - filled, QLatin1Char('.')) + QStringLiteral("] ") +
                   QStringLiteral("%1%").arg(int(std::floor(fraction * 100)), 3) +
                   QStringLiteral("  ") + size(progress.bytesSent) + QStringLiteral(" of ") +
                   size(progress.totalBytes);
    switch (progress.phase) {
    case TransferProgress::Phase::Preparing:
        return text + QStringLiteral("  connecting");
    case TransferProgress::Phase::Uploading:
        text += QStringLiteral("  ") + size(qint64(progress.bytesPerSecond)) + QStringLiteral("/s");
        if (progress.bytesPerSecond > 0 && progress.bytesSent <= progress.totalBytes)
            text += QStringLiteral("  ") +
                    duration(double(progress.totalBytes - progress.bytesSent) /
                             progress.bytesPerSecond) +
                    QStringLiteral(" left");
        return text;
    case TransferProgress::Phase::Completed:
        return text + QStringLiteral("  done");
    case TransferProgress::Phase::Cancelled:
        return text + QStringLiteral("  cancelled");
    }
    return text;
}

void ProgressBar::show(const TransferProgress& progress) {
    const QString text = line(progress);
    m_stream << '\r' << text;
    if (text.size() < m_lastWidth)
        m_stream << QString(m_lastWidth - text.size(), QLatin1Char(' '));
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
