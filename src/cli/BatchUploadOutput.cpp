#include "cli/BatchUploadOutput.h"

#include "cli/Console.h"
#include "cli/ProgressBar.h"
#include "cli/ProgressJson.h"
#include "cli/UploadEndLines.h"

#include <QDir>
#include <QJsonArray>

namespace tarnwick::cli {

BatchUploadOutput::BatchUploadOutput(const UploadBatch& batch, bool json)
    : m_batch(batch)
    , m_json(json)
    , m_live(!json && isTerminal(stdout))
    , m_columns(m_live ? terminalColumns() : 0) {
    if (!m_live)
        return;
    for (qsizetype index = 0; index < batch.pairs().size(); ++index)
        out() << label(index) << "  " << tr("waiting") << '\n';
    out().flush();
}

QString BatchUploadOutput::label(qsizetype index) const {
    const UploadPair& pair = m_batch.pairs()[index]->pair();
    return tr("%1 → %2").arg(pair.file.fileName(), pair.machine.id());
}

QJsonObject BatchUploadOutput::withPair(qsizetype index, QJsonObject object) const {
    const UploadPair& pair = m_batch.pairs()[index]->pair();
    object.insert(QStringLiteral("file"), QDir::toNativeSeparators(pair.file.url.toLocalFile()));
    object.insert(QStringLiteral("machine"), pair.machine.id());
    return object;
}

// Each pair keeps its own line: the cursor goes up to it, rewrites it and comes back below all.
void BatchUploadOutput::redraw(qsizetype index, const QString& state) {
    const QString text =
        ProgressBar::fitted(label(index) + QStringLiteral("  ") + state, m_columns);
    const qsizetype up = m_batch.pairs().size() - index;
    out() << "\x1b[" << up << "A\r" << text << "\x1b[K\x1b[" << up << "B\r";
    out().flush();
}

void BatchUploadOutput::checking(qsizetype index, qint64 bytesChecked, qint64 totalBytes) {
    if (m_json) {
        printJsonLine(withPair(index, checkingToJson(bytesChecked, totalBytes)));
    } else if (m_live) {
        redraw(index, ProgressBar::checkingLine(bytesChecked, totalBytes));
    }
}

void BatchUploadOutput::progress(qsizetype index, const TransferProgress& progress) {
    if (m_json) {
        printJsonLine(withPair(index, toJson(progress)));
    } else if (m_live) {
        redraw(index, ProgressBar::line(progress));
    }
}

void BatchUploadOutput::ended(qsizetype index, const PairOutcome& outcome) {
    if (m_json) {
        QJsonObject line{{QStringLiteral("exitCode"), int(outcome.code)}};
        if (outcome.code != Success) {
            line.insert(QStringLiteral("error"), outcome.message);
            line.insert(QStringLiteral("kind"), kindName(outcome.code));
            if (!outcome.advice.isEmpty())
                line.insert(QStringLiteral("advice"), outcome.advice);
        }
        printJsonLine(withPair(index, line));
        if (outcome.warning)
            printJsonLine(withPair(index, {{QStringLiteral("warning"), *outcome.warning}}));
    } else if (m_live) {
        // A success leaves its completed bar standing.
        if (outcome.code != Success)
            redraw(index, outcome.message);
    } else if (outcome.code == Success) {
        out() << uploadedLine(m_batch.pairs()[index]->pair()) << '\n';
        out().flush();
    }
}

void BatchUploadOutput::finished() {
    if (m_json)
        printJsonSummary();
    else
        printTextSummary();
}

void BatchUploadOutput::printJsonSummary() const {
    QJsonArray pairs;
    qsizetype succeeded = 0;
    for (qsizetype index = 0; index < m_batch.pairs().size(); ++index) {
        const ExitCode code = m_batch.outcomes()[index].code;
        QJsonObject pair = withPair(index, {{QStringLiteral("exitCode"), int(code)}});
        if (code == Success)
            ++succeeded;
        else
            pair.insert(QStringLiteral("kind"), kindName(code));
        pairs.append(pair);
    }
    printJsonLine({{QStringLiteral("succeeded"), succeeded},
                   {QStringLiteral("failed"), m_batch.pairs().size() - succeeded},
                   {QStringLiteral("exitCode"), int(m_batch.exitCode())},
                   {QStringLiteral("pairs"), pairs}});
}

void BatchUploadOutput::printTextSummary() const {
    qsizetype succeeded = 0;
    for (qsizetype index = 0; index < m_batch.pairs().size(); ++index) {
        const PairOutcome& outcome = m_batch.outcomes()[index];
        if (outcome.code == Success)
            ++succeeded;
        else
            err() << tr("%1: %2").arg(label(index), outcome.message) << '\n';
        if (!outcome.advice.isEmpty())
            err() << outcome.advice << '\n';
        if (outcome.warning)
            err() << tr("%1: %2").arg(label(index), *outcome.warning) << '\n';
    }
    err().flush();
    out() << tr("%1 of %n uploads succeeded.", nullptr, int(m_batch.pairs().size())).arg(succeeded)
          << '\n';
    out().flush();
}

} // namespace tarnwick::cli
