#pragma once

#include "app/TransferProgress.h"

#include <QTextStream>

namespace tarnwick::cli {

// One line on a terminal, redrawn in place: bar, percentage, bytes, rate and time left.
class ProgressBar {
public:
    explicit ProgressBar(QTextStream& stream)
        : m_stream(stream) {}

    void show(const TransferProgress& progress);
    // Ends the line, if one was drawn.
    void finish();

    // The line for one value, without the carriage return.
    static QString line(const TransferProgress& progress);

private:
    QTextStream& m_stream;
    qsizetype m_lastWidth = 0;
};

} // namespace tarnwick::cli
