#include "cli/ProgressBar.h"

#include "app/TransferTexts.h"

#include <cmath>

namespace tarnwick::cli {

namespace {

constexpr int barWidth = 30;

} // namespace

QString ProgressBar::line(const TransferProgress& progress) {
    const double fraction = progress.fraction();
    const int filled = int(std::lround(fraction * barWidth));
    QString text =
        u'[' + QString(filled, u'#') + QString(barWidth - filled, u'.') + QStringLiteral("] ") +
        percentText(fraction).rightJustified(4) + QStringLiteral("  ") +
        tr("%1 of %2").arg(byteCount(progress.bytesSent), byteCount(progress.totalBytes));
    switch (progress.phase) {
    case TransferProgress::Phase::Preparing:
        return text + QStringLiteral("  ") + tr("connecting");
    case TransferProgress::Phase::Uploading:
        for (const auto& part : {rateText(progress.bytesPerSecond), timeLeftText(progress)}) {
            if (part)
                text += QStringLiteral("  ") + *part;
        }
        return text;
    case TransferProgress::Phase::Completed:
        return text + QStringLiteral("  ") + tr("done");
    case TransferProgress::Phase::Cancelled:
        return text + QStringLiteral("  ") + tr("cancelled");
    }
    return text;
}

QString ProgressBar::checkingLine(qint64 bytesChecked, qint64 totalBytes) {
    const double fraction = totalBytes > 0 ? double(bytesChecked) / double(totalBytes) : 0;
    return tr("Checking the file… %1").arg(percentText(fraction));
}

QString ProgressBar::fitted(const QString& text, int columns) {
    // The last column stays free: a line that fills it wraps on some terminals.
    if (columns > 1 && text.size() >= columns)
        return text.left(columns - 2) + u'…';
    return text;
}

void ProgressBar::show(const TransferProgress& progress) {
    redraw(line(progress));
}

void ProgressBar::showChecking(qint64 bytesChecked, qint64 totalBytes) {
    redraw(checkingLine(bytesChecked, totalBytes));
}

void ProgressBar::redraw(const QString& line) {
    const QString text = fitted(line, m_columns);
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
