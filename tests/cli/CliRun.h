#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace tarnwick::testing {

// The built tarnwick-cli, run with a settings folder of its own.
inline void prepareCli(QProcess& process, const QTemporaryDir& configDir,
                       const QStringList& arguments) {
    process.setProgram(qEnvironmentVariable("TARNWICK_BIN_DIR") + QStringLiteral("/tarnwick-cli"));
    process.setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configDir.path());
    process.setProcessEnvironment(environment);
}

struct CliResult {
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs tarnwick-cli to its end (at most 20 s).
inline CliResult runCli(const QStringList& arguments) {
    QTemporaryDir configDir;
    QProcess process;
    prepareCli(process, configDir, arguments);
    process.start();
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace tarnwick::testing
