#include "cli/UploadEndLines.h"

#include "cli/Console.h"

#include <QCoreApplication>

namespace tarnwick::cli {

void reportFailure(const QString& message, ExitCode code, bool json) {
    if (json)
        printJsonLine(
            {{QStringLiteral("error"), message}, {QStringLiteral("kind"), kindName(code)}});
    fail(message, code);
}

QString uploadedLine(const UploadPair& pair) {
    return QCoreApplication::translate("cli", "Uploaded %1 to %2:%3%1.")
        .arg(pair.file.fileName(), pair.machine.id(), QLatin1String(machineJobFolder));
}

} // namespace tarnwick::cli
