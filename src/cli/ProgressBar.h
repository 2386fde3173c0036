#pragma once

#include "app/TransferProgress.h"

#include <QCoreApplication>
#include <QTextStream>

namespace tarnwick::cli {

// One line on a terminal, redrawn in place: bar, percentage, bytes, rate and time left.
class ProgressBar {
    Q_DECLARE_TR_FUNCTIONS(ProgressBar)

public:
    // Each line fits in `columns` (none when 0: the width is not known), so that redrawing it
    // never wraps onto a second line that the carriage return cannot reach.
    explicit ProgressBar(QTextStream& stream, int columns = 0)
        : m_stream(stream)
        , m_columns(columns) {}

    void show(const TransferProgress& progress);
    void showChecking(qint64 bytesChecked, qint64 totalBytes);
    // Ends the line, if one was drawn.
    void finish();

    // The line for one value, without the carriage return.
    static QString line(const TransferProgress& progress);
    // The line while the file is read and hashed, before anything is sent.
    static QString checkingLine(qint64 bytesChecked, qint64 totalBytes);
    // The text cut to fewer than `columns` characters with an ellipsis; whole when it fits or
    // the width is not known (0).
    static QString fitted(const QString& text, int columns);

private:
    void redraw(const QString& line);

    QTextStream& m_stream;
    const int m_columns;
    qsizetype m_lastWidth = 0;
};

} // namespace tarnwick::cli
