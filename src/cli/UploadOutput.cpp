#include "cli/UploadOutput.h"

#include "cli/BatchUploadOutput.h"
#include "cli/Console.h"
#include "cli/SingleUploadOutput.h"

#include <QJsonObject>

namespace tarnwick::cli {

std::unique_ptr<UploadOutput> UploadOutput::create(const UploadBatch& batch, bool json) {
    if (batch.pairs().size() == 1)
        return std::make_unique<SingleUploadOutput>(batch.pairs().first()->pair(), json);
    return std::make_unique<BatchUploadOutput>(batch, json);
}

void reportFailure(const QString& message, ExitCode code, bool json, const QString& advice) {
    if (json) {
        QJsonObject line{{QStringLiteral("error"), message},
                         {QStringLiteral("kind"), kindName(code)}};
        if (!advice.isEmpty())
            line.insert(QStringLiteral("advice"), advice);
        printJsonLine(line);
    }
    fail(advice.isEmpty() ? message : message + u'\n' + advice, code);
}

QString uploadedLine(const UploadPair& pair) {
    return QCoreApplication::translate("cli", "Uploaded %1 to %2:/sd/gcodes/%1.")
        .arg(pair.file.fileName(), pair.machine.id());
}

QJsonObject toJson(const TransferProgress& progress) {
    return {
        {QStringLiteral("phase"), rawValue(progress.phase)},
        {QStringLiteral("bytesSent"), progress.bytesSent},
        {QStringLiteral("totalBytes"), progress.totalBytes},
        {QStringLiteral("bytesPerSecond"), progress.bytesPerSecond},
    };
}

QJsonObject checkingToJson(qint64 bytesChecked, qint64 totalBytes) {
    return {
        {QStringLiteral("phase"), QStringLiteral("checking")},
        {QStringLiteral("bytesChecked"), bytesChecked},
        {QStringLiteral("totalBytes"), totalBytes},
    };
}

} // namespace tarnwick::cli
