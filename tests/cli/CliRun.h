#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace tarnwick::testing {

// The built tarnwick-cli, run with a settings store of its own.
inline void prepareCli(QProcess& process, const QTemporaryDir& configDir,
                       const QStringList& arguments) {
    process.setProgram(qEnvironmentVariable("TARNWICK_BIN_DIR") + QStringLiteral("/tarnwick-cli"));
    process.setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TARNWICK_SETTINGS_FILE"),
                       configDir.filePath(QStringLiteral("settings.ini")));
    process.setProcessEnvironment(environment);
}

struct CliResult {
    int exitCode = -1;
    QString out;
    QString err;

    QStringList all() const { return {QString::number(exitCode), out, err}; }
};

// Runs tarnwick-cli to its end (at most 20 s), calling whileRunning every 50 ms until then.
// The exit code is -1 when it did not end normally.
inline CliResult runCli(const QStringList& arguments,
                        const std::function<void(const QProcess&)>& whileRunning = {}) {
    QTemporaryDir configDir;
    QProcess process;
    prepareCli(process, configDir, arguments);
    process.start();
    if (!process.waitForStarted())
        return {};
    for (int wait = 0; wait < 400 && !process.waitForFinished(50); ++wait) {
        if (whileRunning)
            whileRunning(process);
    }
    if (process.state() != QProcess::NotRunning || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// A table of runs: the arguments, separated by blanks, and the whole result expected.
inline void cliColumns() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
}
inline void cliRow(const char* name, const QString& arguments, int exitCode, const QString& out,
                   const QString& err = {}) {
    QTest::newRow(name) << arguments.split(u' ', Qt::SkipEmptyParts)
                        << CliResult{exitCode, out, err}.all();
}
inline void compareCliRun(const std::function<void(const QProcess&)>& whileRunning = {}) {
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    QCOMPARE(runCli(arguments, whileRunning).all(), expected);
}

} // namespace tarnwick::testing
