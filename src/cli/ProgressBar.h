#pragma once

#include "app/TransferProgress.h"

#include <QCoreApplication>
#include <QTextStream>

namespace tarnwick::cli {

// One line on a terminal, redrawn in place: bar, percentage, bytes, rate and time left.
class ProgressBar {
    Q_DECLARE_TR_FUNCTIONS(ProgressBar)

public:
    explicit ProgressBar(QTextStream& stream)
        : m_stream(stream) {}

    void show(const TransferProgress& progress);
    void showChecking(qint64 bytesChecked, qint64 totalBytes);
    // Ends the line, if one was drawn.
    void finish();

    // The line for one value, without the carriage return.
    static QString line(const TransferProgress& progress);
    // The line while the file is read and hashed, before anything is sent.
    static QString checkingLine(qint64 bytesChecked, qint64 totalBytes);

private:
    void redraw(const QString& text);

    QTextStream& m_stream;
    qsizetype m_lastWidth = 0;
};

} // namespace tarnwick::cli
