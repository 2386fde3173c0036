#include "cli/UploadEndLines.h"

#include "cli/Console.h"

#include <QCoreApplication>
#include <QJsonObject>

namespace tarnwick::cli {

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
    return QCoreApplication::translate("cli", "Uploaded %1 to %2:%3%1.")
        .arg(pair.file.fileName(), pair.machine.id(), QLatin1String(machineJobFolder));
}

} // namespace tarnwick::cli
