#include "cli/SingleUploadOutput.h"

#include "cli/Console.h"
#include "cli/ProgressJson.h"
#include "cli/UploadEndLines.h"

namespace tarnwick::cli {

SingleUploadOutput::SingleUploadOutput(const UploadPair& pair, bool json)
    : m_pair(pair)
    , m_json(json) {
    if (!json && isTerminal(stdout))
        m_bar.emplace(out(), terminalColumns());
}

void SingleUploadOutput::checking(qsizetype, qint64 bytesChecked, qint64 totalBytes) {
    if (m_json)
        printJsonLine(checkingToJson(bytesChecked, totalBytes));
    else if (m_bar)
        m_bar->showChecking(bytesChecked, totalBytes);
}

void SingleUploadOutput::progress(qsizetype, const TransferProgress& progress) {
    if (m_json)
        printJsonLine(toJson(progress));
    else if (m_bar)
        m_bar->show(progress);
}

void SingleUploadOutput::ended(qsizetype, const PairOutcome& outcome) {
    if (m_bar)
        m_bar->finish();
    if (outcome.code != Success)
        return reportFailure(outcome.message, outcome.code, m_json, outcome.advice);
    if (!m_json) {
        out() << uploadedLine(m_pair) << '\n';
        out().flush();
    }
    if (outcome.warning) {
        if (m_json)
            printJsonLine({{QStringLiteral("warning"), *outcome.warning}});
        fail(*outcome.warning, Success);
    }
}

} // namespace tarnwick::cli
